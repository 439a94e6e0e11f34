#include "library/ListaVideo.h"

#include "library/DurationText.h"
#include "platform/foundation/ClassRegistry.h"
#include "platform/foundation/Required.h"
#include "platform/mediaplayer/MPMediaQuery.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"

namespace {

const ClassRegistration listRegistration = registerClass<ListaVideo>("ListaVideo");

constexpr const char* cellIdentifier = "cell";
constexpr UIColor rowColour = UIColor::colorWithRed_green_blue_alpha(0.106, 0.129, 0.141, 1.0);
constexpr const char* helpPageAddress = "quillop-help:add-videos";

template <class T>
Strong<T> property(const MPMediaItem& item, const char* name) {
  return std::dynamic_pointer_cast<T>(item.valueForProperty(name));
}

}  // namespace

InterfaceTable ListaVideo::interfaceTable() {
  return InterfaceTable()
      .outlet("tabella1", tabella1)
      .outlet("tabella2", tabella2)
      .action("chiudi:", this, &ListaVideo::chiudi);
}

void ListaVideo::viewDidLoad() {
  UIViewController::viewDidLoad();
}

void ListaVideo::viewWillLayoutSubviews() {
  view()->setBackgroundColor(UIColor::blackColor());
}

void ListaVideo::viewDidAppear(bool /*animated*/) {
  caricaLista();
}

void ListaVideo::caricaLista() {
  MPMediaQuery query;
  query.addFilterPredicate(MPMediaPropertyPredicate::predicateWithValue_forProperty(
      NSNumber::numberWithInteger(MPMediaTypeHomeVideo), MPMediaItemPropertyMediaType));
  auto items = query.items();
  if (!items) fatalError("the media library gave no list");
  arrayFilm = std::move(*items);
  print("numero video : " + std::to_string(arrayFilm.size()));
  if (arrayFilm.empty()) mostraLibreriaVuota();
  required(tabella1, "tabella1").reloadData();
  required(tabella2, "tabella2").reloadData();
}

void ListaVideo::mostraLibreriaVuota() {
  const auto alert = UIAlertController::alertControllerWithTitle_message_preferredStyle(
      std::nullopt, "You have no Movies in the library. Would you like to learn how to add videos from iTunes?",
      UIAlertControllerStyle::Alert);
  alert->addAction(UIAlertAction::actionWithTitle_style_handler("OK", UIAlertActionStyle::Default, nullptr));
  alert->addAction(UIAlertAction::actionWithTitle_style_handler(
      "Tutorial for add Movies", UIAlertActionStyle::Default, [](const Strong<UIAlertAction>&) {
        const auto page = NSURL::URLWithString(helpPageAddress);
        if (!page) return;
        UIApplication::sharedApplication()->openURL_options_completionHandler(page, {}, nullptr);
      }));
  presentViewController_animated_completion(alert, true);
}

const Strong<MPMediaItem>& ListaVideo::film(long row) const {
  if (row < 0 || static_cast<std::size_t>(row) >= arrayFilm.size()) fatalError("a row that the list does not have");
  return arrayFilm[static_cast<std::size_t>(row)];
}

long ListaVideo::tableView_numberOfRowsInSection(const Strong<UITableView>& /*tableView*/, long /*section*/) {
  return static_cast<long>(arrayFilm.size());
}

Strong<UITableViewCell> ListaVideo::tableView_cellForRowAtIndexPath(const Strong<UITableView>& tableView,
                                                                    NSIndexPath indexPath) {
  auto cell = tableView->dequeueReusableCellWithIdentifier(cellIdentifier);
  if (!cell) cell = make<UITableViewCell>(UITableViewCellStyle::Subtitle, cellIdentifier);
  cell->contentView()->setBackgroundColor(rowColour);
  if (cell->textLabel()) cell->textLabel()->setTextColor(UIColor::whiteColor());
  required(cell->detailTextLabel(), "the detail label of a row").setTextColor(UIColor::grayColor());
  riempi(*cell, indexPath.row);
  return cell;
}

void ListaVideo::riempi(UITableViewCell& cell, long row) const {
  const auto& item = *film(row);
  const auto title = property<NSString>(item, MPMediaItemPropertyTitle);
  cell.textLabel()->setText(title ? std::optional(title->text()) : std::nullopt);

  const auto duration = property<NSNumber>(item, MPMediaItemPropertyPlaybackDuration);
  const std::string text = durationText(required(duration, "the duration of an item").integerValue());
  cell.detailTextLabel()->setText(text);
  print("durataVideo : " + text);

  const auto artwork = property<MPMediaItemArtwork>(item, MPMediaItemPropertyArtwork);
  const auto image = required(artwork, "the artwork of an item").imageWithSize({0.0, 0.0});
  required(image, "the picture of an item's artwork");
  cell.imageView()->setImage(image);
}

void ListaVideo::tableView_didSelectRowAtIndexPath(const Strong<UITableView>& tableView, NSIndexPath indexPath) {
  print("You tapped cell number " + std::to_string(indexPath.row) + ".");
  const auto url = property<NSURL>(*film(indexPath.row), MPMediaItemPropertyAssetURL);
  required(url, "the address of an item");
  const bool video1 = tableView->tag() == 1;
  print(video1 ? "tabella 1" : "tabella 2");
  dismissViewControllerAnimated_completion(true, [self = strongReference(this), url, video1] {
    print("finito");
    if (self->delegate) self->delegate->passoVideo(url, video1);
  });
}

void ListaVideo::chiudi(const Strong<UIControl>& /*sender*/) {
  print("chiudi");
  dismissViewControllerAnimated_completion(true);
}
