#include "hosts/desktop/LibraryWait.h"

#include "hosts/desktop/ProgressText.h"
#include "platform/mediaplayer/MPMediaQuery.h"

#include <utility>

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// Shorter waits are not shown: a card that comes and goes at once is worse than a moment of nothing.
constexpr auto noticedWait = 300ms;
/// Somebody wants to see a list that could be shown.
constexpr auto longestWaitForTheRest = 1s;

}  // namespace

LibraryWait::LibraryWait(Layers& layers) : layer_(layers) {
  untilNoticed_.setSingleShot(true);
  untilNoticed_.setInterval(noticedWait);
  connect(&untilNoticed_, &QTimer::timeout, this, &LibraryWait::show);
  patience_.setSingleShot(true);
  patience_.setInterval(longestWaitForTheRest);
  connect(&patience_, &QTimer::timeout, this, [this] { end(true); });
}

void LibraryWait::begin(GuardedLibrary& library, Answered answered) {
  answered_.push_back(std::move(answered));
  if (library_ != nullptr) return;
  library_ = &library;
  connect(library_, &GuardedLibrary::changed, this, &LibraryWait::update);
  untilNoticed_.start();
  emit waitingChanged();
  update();
  if (isWaiting() && contents_.items > 0) patience_.start();
}

void LibraryWait::update() {
  const auto contents = library_->contents(MPMediaTypeHomeVideo);
  if (!contents || (contents->unknownFiles == 0 && !contents->isSearching)) {
    end(true);
    return;
  }
  contents_ = *contents;
  progress_ = library_->progress();
  emit changed();
}

void LibraryWait::show() {
  layer_.cover(QStringLiteral("LibraryWait"), *this, [this] { cancel(); });
}

void LibraryWait::endLater(bool isReady) {
  layer_.endLater([this, isReady] { end(isReady); });
}

void LibraryWait::end(bool isReady) {
  library_->disconnect(this);
  library_ = nullptr;
  untilNoticed_.stop();
  patience_.stop();
  layer_.end();
  const auto answered = std::exchange(answered_, {});
  emit waitingChanged();
  for (const auto& each : answered) each(isReady);
}

double LibraryWait::fraction() const {
  return fractionOf(progress_);
}

QString LibraryWait::count() const {
  return countText(progress_);
}

QString LibraryWait::remaining() const {
  return progress_.total > 0 && progress_.secondsLeft ? remainingText(*progress_.secondsLeft) : QString();
}

QString LibraryWait::found() const {
  return contents_.items == 0 ? QString() : videosText(contents_.items);
}

}  // namespace desktop
