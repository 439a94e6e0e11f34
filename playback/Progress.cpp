// The progress sliders follow their films, once a second.

#include "playback/ViewController.h"

#include "platform/foundation/Required.h"

#include <algorithm>

namespace {

constexpr const char* filmNumberKey = "numeroVideo";
constexpr double progressInterval = 1.0;

/// The film number in a timer's user info; none when that is no dictionary of whole numbers. A dictionary without
/// the number stops the app.
std::optional<long> filmNumberIn(const Strong<NSObject>& userInfo) {
  const auto dictionary = std::dynamic_pointer_cast<NSDictionary>(userInfo);
  if (!dictionary) return std::nullopt;
  const auto isWholeNumber = [](const auto& entry) {
    const auto number = std::dynamic_pointer_cast<NSNumber>(entry.second);
    return number && number->isInteger();
  };
  if (!std::ranges::all_of(dictionary->entries(), isWholeNumber)) return std::nullopt;
  const auto number = std::dynamic_pointer_cast<NSNumber>(dictionary->objectForKey(filmNumberKey));
  return required(number, filmNumberKey).integerValue();
}

float lengthOf(const Strong<AVPlayer>& player) {
  const auto& item = required(required(player, "a video player").currentItem(), "a video player's item");
  return static_cast<float>(CMTimeGetSeconds(item.asset()->duration()));
}

}  // namespace

void ViewController::avviaTimerVideo(const FilmSlot& film) {
  const auto userInfo =
      make<NSDictionary>(NSDictionary::Entries{{filmNumberKey, NSNumber::numberWithInteger(film.constants.number)}});
  film.timerVideo = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      progressInterval, strongReference(this), &ViewController::updateSliderWithSender, userInfo, true);
}

void ViewController::setSlider(long number) {
  print("setSlider");
  const FilmSlot film = this->film(number);
  avviaTimerVideo(film);
  UISlider& slider = required(film.progressSlider, "a progress slider");
  slider.setMaximumValue(lengthOf(film.playerVideo));
  slider.setMinimumValue(0.0F);
  slider.setContinuous(true);
}

void ViewController::updateSliderWithSender(const Strong<NSTimer>& timer) {
  const auto number = filmNumberIn(timer->userInfo());
  if (!number) return;
  const FilmSlot film = this->film(*number);
  UISlider& slider = required(film.progressSlider, "a progress slider");
  slider.setMaximumValue(lengthOf(film.playerVideo));
  slider.setValue(static_cast<float>(CMTimeGetSeconds(film.playerVideo->currentTime())));
}
