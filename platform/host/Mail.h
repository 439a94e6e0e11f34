#pragma once

#include <functional>
#include <string>
#include <vector>

namespace host {

struct MailDraft {
  std::vector<std::string> recipients;
  std::string subject;  ///< empty for none
  std::string body;     ///< UTF-8
  bool isHTML = false;
};

/// The user's own mail program. Main thread.
class Mail {
 public:
  virtual ~Mail() = default;
  /// Whether there is one that takes a draft with an HTML body. Quick enough to be asked at every press.
  virtual bool canCompose() const = 0;
  /// Opens `draft` there, ready to be edited and sent. `done` hears on the main thread, in a later turn, whether the
  /// program took it.
  virtual void compose(const MailDraft& draft, std::function<void(bool handedOver)> done) = 0;
};

}  // namespace host
