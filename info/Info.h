#pragma once

#include "platform/messageui/MFMailComposeViewController.h"
#include "tutorial/delegatoTutorialChiuso.h"

/// What the app is, a way to write to its makers, and the tutorial once more.
class Info final : public UIViewController,
                   public MFMailComposeViewControllerDelegate,
                   public delegatoTutorialChiuso {
 public:
  explicit Info(const std::optional<std::string>& nibName = std::nullopt, NSBundle* bundle = nullptr)
      : UIViewController(nibName, bundle) {}
  explicit Info(const NSCoder& coder) : UIViewController(coder) {}

  void viewDidLoad() override;
  void contattaci(const Strong<UIControl>& sender);
  void tutorial(const Strong<UIControl>& sender);
  void chiudi(const Strong<UIControl>& sender);
  void mailComposeController_didFinishWithResult_error(const Strong<MFMailComposeViewController>& controller,
                                                       MFMailComposeResult result,
                                                       const Strong<NSError>& error) override;
  void chiusoTutorial() override;

  InterfaceTable interfaceTable() override;
};
