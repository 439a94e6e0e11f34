#include "hosts/desktop/SoundOutput.h"

#include <utility>

namespace desktop {

SoundOutputRule::Consequences SoundOutputRule::next(const std::optional<SoundOutput>& output, Passing passing) {
  if (passing == Passing::Lost) last_.reset();
  if (passing == Passing::Vanished) lastVanished_ = true;
  if (!last_) lastVanished_ = false;
  if (!output) return {};
  const auto before = std::exchange(last_, output);
  const bool vanished = std::exchange(lastVanished_, false);
  Consequences consequences;
  const bool leavesEars = before && before->audience == Audience::Wearer && output->audience != Audience::Wearer;
  consequences.pausesFilms = vanished || leavesEars;
  const bool isNews = !before || before->device != output->device || before->channels != output->channels;
  consequences.tellsThatItIsMono = output->channels == 1 && isNews;
  return consequences;
}

}  // namespace desktop
