// Access to the media library, and the way to the other screens.

#include "playback/ViewController.h"

#include "library/ListaVideo.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Required.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIStoryboardSegue.h"

using enum MPMediaLibraryAuthorizationStatus;

namespace {

constexpr const char* listSegue = "ListaVideo";
constexpr const char* infoSegue = "Info";

const char* reasonFor(MPMediaLibraryAuthorizationStatus status) {
  switch (status) {
    case Denied:
      return "Media library access denied by user";
    case Restricted:
      return "Media library access restricted by corporate or parental settings";
    default:
      return "Unknown error";
  }
}

void openSettings(const Strong<UIAlertAction>& /*action*/) {
  const auto address = NSURL::URLWithString(UIApplicationOpenSettingsURLString);
  required(address, "the address of the settings page");
  UIApplication::sharedApplication()->openURL_options_completionHandler(address, {}, nullptr);
}

}  // namespace

void ViewController::rispostaLibreria(MPMediaLibraryAuthorizationStatus status) {
  if (status == Authorized) {
    print("posso accedere alla libreria");
  } else {
    mostraErroreLibreria();
  }
}

void ViewController::mostraErroreLibreria() {
  // The status that holds now, which may differ from the one that led here.
  const auto status = MPMediaLibrary::authorizationStatus();
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      "Error", reasonFor(status), UIAlertControllerStyle::Alert);
  alert->addAction(UIAlertAction::actionWithTitle_style_handler("OK", UIAlertActionStyle::Cancel, nullptr));
  alert->addAction(
      UIAlertAction::actionWithTitle_style_handler("Open Settings", UIAlertActionStyle::Default, openSettings));
  presentViewController_animated_completion(alert, true);
}

void ViewController::listaVideo(const Strong<UIControl>& /*sender*/) {
  print("listaVideo");
  popTip->hide(false);
  if (MPMediaLibrary::authorizationStatus() != Authorized) {
    print("errore");
    mostraErroreLibreria();
    return;
  }
  print("posso caricare la lista :");
  DispatchQueue::main().async([self = strongReference(this)] {
    self->performSegueWithIdentifier_sender(listSegue, NSNumber::numberWithBool(true));
  });
}

void ViewController::prepareForSegue_sender(const Strong<UIStoryboardSegue>& segue,
                                            const Strong<NSObject>& /*sender*/) {
  print("prepare");
  if (segue->identifier() != listSegue) return;
  const auto list = std::dynamic_pointer_cast<ListaVideo>(segue->destinationViewController());
  required(list, "the list screen").delegate = strongReference(this);
  print("segue");
}

void ViewController::info(const Strong<UIControl>& /*sender*/) {
  print("info");
  performSegueWithIdentifier_sender(infoSegue, strongReference(this));
}
