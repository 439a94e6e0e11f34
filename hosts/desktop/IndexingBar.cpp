#include "hosts/desktop/IndexingBar.h"

#include "hosts/desktop/ProgressText.h"

namespace desktop {

namespace {

using namespace std::chrono_literals;

/// What takes less than both is over before anybody has read about it.
constexpr std::size_t manyFiles = 50;
constexpr double longTime = 3;  // seconds
/// How long an estimate of the time is waited for.
constexpr auto judgementTime = 2s;

}  // namespace

IndexingBar::IndexingBar(Layers& layers, GuardedLibrary& library) : library_(library), layer_(layers) {
  judgement_.setSingleShot(true);
  judgement_.setInterval(judgementTime);
  connect(&judgement_, &QTimer::timeout, this, &IndexingBar::update);
  connect(&library_, &GuardedLibrary::changed, this, &IndexingBar::update);
  update();
}

void IndexingBar::setHeldBack(bool isHeldBack) {
  isHeldBack_ = isHeldBack;
  update();
}

void IndexingBar::update() {
  const bool wasWorking = progress_.total > 0;
  progress_ = library_.progress();
  const bool isWorking = progress_.total > 0;
  if (isWorking && !wasWorking) judgement_.start();
  if (!isWorking) judgement_.stop();
  isTold_ = isWorking && (isTold_ || isLong());
  const bool isWanted = isTold_ && !isHidden_ && !isHeldBack_;
  if (!isWanted) {
    layer_.end();
  } else if (!isShown()) {
    layer_.decorate(QStringLiteral("IndexingBar"), *this);
  }
  emit changed();
}

bool IndexingBar::isLong() const {
  if (progress_.total < manyFiles) return false;
  return progress_.secondsLeft ? *progress_.secondsLeft > longTime : !judgement_.isActive();
}

double IndexingBar::fraction() const {
  return fractionOf(progress_);
}

QString IndexingBar::text() const {
  return progressText(progress_);
}

void IndexingBar::hide() {
  isHidden_ = true;
  layer_.endLater();
}

}  // namespace desktop
