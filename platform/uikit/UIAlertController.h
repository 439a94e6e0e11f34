#pragma once

#include "platform/uikit/UIViewController.h"

enum class UIAlertControllerStyle { ActionSheet = 0, Alert = 1 };
enum class UIAlertActionStyle { Default = 0, Cancel = 1, Destructive = 2 };

/// One button of an alert.
class UIAlertAction final : public NSObject {
 public:
  using Handler = std::function<void(const Strong<UIAlertAction>&)>;

  static Strong<UIAlertAction> actionWithTitle_style_handler(std::string title, UIAlertActionStyle style,
                                                             Handler handler) {
    return make<UIAlertAction>(std::move(title), style, std::move(handler));
  }
  UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler)
      : title_(std::move(title)), style_(style), handler_(std::move(handler)) {}

  const std::string& title() const { return title_; }
  UIAlertActionStyle style() const { return style_; }

 private:
  friend class UIAlertController;

  std::string title_;
  UIAlertActionStyle style_;
  Handler handler_;
};

/// A short message with buttons, over everything. The screen host draws it from these properties.
class UIAlertController final : public UIViewController {
 public:
  static Strong<UIAlertController> alertControllerWithTitle_message_preferredStyle(std::optional<std::string> title,
                                                                                   std::optional<std::string> message,
                                                                                   UIAlertControllerStyle style) {
    return make<UIAlertController>(std::move(title), std::move(message), style);
  }
  UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                    UIAlertControllerStyle style)
      : title_(std::move(title)), message_(std::move(message)), style_(style) {}

  void addAction(const Strong<UIAlertAction>& action) { actions_.push_back(action); }
  const std::vector<Strong<UIAlertAction>>& actions() const { return actions_; }
  const std::optional<std::string>& title() const { return title_; }
  const std::optional<std::string>& message() const { return message_; }
  UIAlertControllerStyle preferredStyle() const { return style_; }

  /// The user pressed the button at that place: the alert is dismissed, then the button's handler runs. Nothing
  /// happens while the alert is not the topmost screen at rest, or the window takes no input.
  void pressAction(std::size_t index);
  /// Escape or Back: the cancel button, else the first.
  void pressCancel();

  bool coversItsPresenter() const override { return false; }
  bool isDrawnByHost() const override { return true; }

 private:
  std::optional<std::string> title_;
  std::optional<std::string> message_;
  UIAlertControllerStyle style_;
  std::vector<Strong<UIAlertAction>> actions_;
};
