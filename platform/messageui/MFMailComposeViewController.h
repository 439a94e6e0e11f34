#pragma once

#include "platform/foundation/Values.h"
#include "platform/uikit/UIViewController.h"

#include <string>
#include <vector>

enum class MFMailComposeResult { Cancelled = 0, Saved = 1, Sent = 2, Failed = 3 };

class MFMailComposeViewController;

class MFMailComposeViewControllerDelegate {
 public:
  virtual ~MFMailComposeViewControllerDelegate() = default;
  virtual void mailComposeController_didFinishWithResult_error(const Strong<MFMailComposeViewController>& controller,
                                                               MFMailComposeResult result,
                                                               const Strong<NSError>& error) = 0;
};

/// Writes a mail in the user's own mail program. Presented, it hands the draft over, and once that is done reports
/// that it finished: `Saved`, since the draft is now the mail program's, or `Failed`. Main thread only.
class MFMailComposeViewController final : public UIViewController {
 public:
  /// Whether the user has a mail program that takes a draft with an HTML body.
  static bool canSendMail();

  void setMailComposeDelegate(const Strong<MFMailComposeViewControllerDelegate>& delegate) { delegate_ = delegate; }
  void setToRecipients(std::vector<std::string> recipients) { recipients_ = std::move(recipients); }
  void setMessageBody_isHTML(std::string body, bool isHTML);
  const std::vector<std::string>& toRecipients() const { return recipients_; }
  /// Empty unless set.
  const std::string& subject() const { return subject_; }
  const std::string& messageBody() const { return body_; }
  bool isHTML() const { return isHTML_; }

  void viewDidAppear(bool animated) override;
  bool coversItsPresenter() const override { return false; }
  bool isDrawnByHost() const override { return true; }

 private:
  Weak<MFMailComposeViewControllerDelegate> delegate_;
  std::vector<std::string> recipients_;
  std::string subject_;
  std::string body_;
  bool isHTML_ = false;
};
