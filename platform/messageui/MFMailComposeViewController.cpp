#include "platform/messageui/MFMailComposeViewController.h"

#include "platform/Platform.h"

bool MFMailComposeViewController::canSendMail() {
  return Platform::current().ports().mail.canCompose();
}

void MFMailComposeViewController::setMessageBody_isHTML(std::string body, bool isHTML) {
  body_ = std::move(body);
  isHTML_ = isHTML;
}

void MFMailComposeViewController::viewDidAppear(bool /*animated*/) {
  const host::MailDraft draft{recipients_, subject_, body_, isHTML_};
  Platform::current().ports().mail.compose(draft, [weak = weakReference(this)](bool handedOver) {
    const auto self = weak.lock();
    const auto delegate = self ? self->delegate_.lock() : nullptr;
    if (!delegate) return;
    delegate->mailComposeController_didFinishWithResult_error(
        self, handedOver ? MFMailComposeResult::Saved : MFMailComposeResult::Failed,
        handedOver ? nullptr : make<NSError>("no mail program took the draft"));
  });
}
