#pragma once

#include "platform/host/Mail.h"
#include "platform/host/MainLoop.h"

#include <QString>

#include <thread>

namespace desktop {

/// The user's mail program as a sandboxed app gets to it: through the portal's Email interface
/// (https://flatpak.github.io/xdg-desktop-portal/, version 3), which lets the user choose the program. It takes plain
/// text only, so that an HTML body arrives as its text.
class MailPortal final : public host::Mail {
 public:
  /// `sessionBus` is the address of the bus with the portal.
  MailPortal(host::MainLoop& mainLoop, QString sessionBus);
  /// Returns once the portal has answered, or has not in time.
  ~MailPortal() override;
  MailPortal(const MailPortal&) = delete;
  MailPortal& operator=(const MailPortal&) = delete;

  /// Every sandbox has the portal; which programs there are, only the portal knows.
  bool canCompose() const override { return !sessionBus_.isEmpty(); }
  void compose(const host::MailDraft& draft, std::function<void(bool handedOver)> done) override;

 private:
  host::MainLoop& mainLoop_;
  QString sessionBus_;
  std::thread question_;
};

}  // namespace desktop
