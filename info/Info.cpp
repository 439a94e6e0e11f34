#include "info/Info.h"

#include "info/SupportAddress.h"
#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/Console.h"
#include "tutorial/Tutorial.h"

namespace {

const ClassRegistration infoRegistration = registerClass<Info>("Info");

}  // namespace

InterfaceTable Info::interfaceTable() {
  return InterfaceTable()
      .action("contattaci:", this, &Info::contattaci)
      .action("tutorial:", this, &Info::tutorial)
      .action("chiudi:", this, &Info::chiudi);
}

void Info::viewDidLoad() {
  UIViewController::viewDidLoad();
}

void Info::contattaci(const Strong<UIControl>& /*sender*/) {
  print("contattaci");
  if (!MFMailComposeViewController::canSendMail()) return;
  const auto composer = make<MFMailComposeViewController>();
  composer->setMailComposeDelegate(strongReference(this));
  composer->setToRecipients({supportAddress});
  composer->setMessageBody_isHTML("<p>Help from Quillop ios.</p>", true);
  presentViewController_animated_completion(composer, true);
}

void Info::mailComposeController_didFinishWithResult_error(const Strong<MFMailComposeViewController>& controller,
                                                           MFMailComposeResult /*result*/,
                                                           const Strong<NSError>& /*error*/) {
  controller->dismissViewControllerAnimated_completion(true);
}

void Info::tutorial(const Strong<UIControl>& /*sender*/) {
  print("tutorial");
  const auto pager = makeTutorial();
  pager->delegate2 = strongReference(this);
  pager->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  presentViewController_animated_completion(pager, true);
}

void Info::chiusoTutorial() {
  print("chiusoTutorial");
}

void Info::chiudi(const Strong<UIControl>& /*sender*/) {
  dismissViewControllerAnimated_completion(true);
}
