#pragma once

#include "platform/host/Mail.h"
#include "platform/host/MainLoop.h"

#include <string>
#include <thread>

namespace desktop {

/// The user's own mail program: the desktop's default for `mailto:` addresses (freedesktop.org's association of MIME
/// types), where it takes a draft with an HTML body in one of two ways:
/// - Thunderbird and its relatives through their `-compose` option;
/// - a program that says it opens message/rfc822, through a file with the draft. Where the default for addresses does
///   not say so (a browser that leads to a web mailer, for instance), the default for message/rfc822 will do, if it
///   is a mail program itself.
/// A program that only runs in a terminal is not used.
class MailPrograms final : public host::Mail {
 public:
  /// Draft files are written to `draftFolder`, readable by this user alone. They stay there when the app ends,
  /// because the mail program may not have read them yet; those of earlier runs are removed now.
  MailPrograms(host::MainLoop& mainLoop, std::string draftFolder);
  /// Returns once no mail program is being started any more. `done` of a `compose` still under way may follow.
  ~MailPrograms() override;
  MailPrograms(const MailPrograms&) = delete;
  MailPrograms& operator=(const MailPrograms&) = delete;

  bool canCompose() const override;
  /// The program is started off the main thread, and outlives the app.
  void compose(const host::MailDraft& draft, std::function<void(bool handedOver)> done) override;

 private:
  host::MainLoop& mainLoop_;
  std::string draftFolder_;
  std::thread start_;
};

}  // namespace desktop
