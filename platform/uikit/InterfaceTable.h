#pragma once

#include "platform/foundation/Console.h"
#include "platform/uikit/UIControl.h"

#include <functional>
#include <map>
#include <string>

/// The outlets and actions of one controller, by the names that the interface resource uses. An action that takes its
/// sender is written with a trailing colon, as in "playPausaFilm:".
class InterfaceTable {
 public:
  /// `field` must live as long as the controller.
  template <class View>
  InterfaceTable& outlet(const std::string& name, Strong<View>& field) {
    outlets_.emplace(name, [name, &field](const Strong<UIView>& view) {
      field = std::dynamic_pointer_cast<View>(view);
      if (!field) fatalError("the outlet " + name + " is of another class");
    });
    return *this;
  }

  template <class Controller>
  InterfaceTable& action(const std::string& name, Controller* controller,
                         void (Controller::*method)(const Strong<UIControl>&)) {
    actions_.emplace(name, [controller, method](const Strong<UIControl>& sender) { (controller->*method)(sender); });
    return *this;
  }

  /// Sets the outlet of that name; stops the app when there is none or it is of another class.
  void connect(const std::string& name, const Strong<UIView>& view) const { found(outlets_, name)(view); }
  /// The action of that name; stops the app when there is none.
  const UIControl::Action& actionNamed(const std::string& name) const { return found(actions_, name); }

 private:
  template <class Entries>
  static const typename Entries::mapped_type& found(const Entries& entries, const std::string& name) {
    const auto entry = entries.find(name);
    if (entry == entries.end())
      fatalError("the interface resource names " + name + ", which its controller does not have");
    return entry->second;
  }

  std::map<std::string, std::function<void(const Strong<UIView>&)>> outlets_;
  std::map<std::string, UIControl::Action> actions_;
};
