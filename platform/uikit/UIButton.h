#pragma once

#include "platform/uikit/UIControl.h"
#include "platform/uikit/UIImage.h"

#include <map>
#include <string>

enum class UIControlState : unsigned { Normal = 0, Highlighted = 1 };

/// A button with a title, an image, or both, each of them by state; a state without one of its own shows the normal
/// one.
class UIButton final : public UIControl {
 public:
  using UIControl::UIControl;

  /// Empty where none was set.
  std::string titleForState(UIControlState state) const { return look(state, &Look::title); }
  void setTitle_forState(std::string title, UIControlState state);
  UIColor titleColorForState(UIControlState state) const;
  void setTitleColor_forState(UIColor color, UIControlState state);
  /// None where none was set.
  Strong<UIImage> imageForState(UIControlState state) const { return look(state, &Look::image); }
  void setImage_forState(Strong<UIImage> image, UIControlState state);
  Strong<UIImage> backgroundImageForState(UIControlState state) const { return look(state, &Look::backgroundImage); }
  void setBackgroundImage_forState(Strong<UIImage> image, UIControlState state);

  /// The user pressed it: by touch, pointer, key or the accessibility interface. Nothing happens while the button
  /// is hidden or its screen is not the topmost one at rest.
  void press();

 private:
  struct Look {
    std::string title;
    std::optional<UIColor> titleColor;
    Strong<UIImage> image;
    Strong<UIImage> backgroundImage;
  };

  template <class T>
  T look(UIControlState state, T Look::*field) const {
    const auto own = looks_.find(state);
    if (own != looks_.end() && own->second.*field != T{}) return own->second.*field;
    const auto normal = looks_.find(UIControlState::Normal);
    return normal == looks_.end() ? T{} : normal->second.*field;
  }

  std::map<UIControlState, Look> looks_;
};
