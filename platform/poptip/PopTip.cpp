#include "platform/poptip/PopTip.h"

#include "platform/foundation/DispatchQueue.h"

void PopTip::show(const std::string& text, PopTipDirection direction, double maxWidth,
                  const Strong<UIView>& container, CGRect sourceRect, std::optional<double> duration) {
  text_ = text;
  direction_ = direction;
  maxWidth_ = maxWidth;
  sourceRect_ = sourceRect;
  container->addSubview(strongReference(this));
  changed();
  ++showing_;
  if (!duration) return;
  DispatchQueue::main().asyncAfter(*duration, [weak = weakReference(this), showing = showing_] {
    const auto balloon = weak.lock();
    if (balloon && balloon->showing_ == showing) balloon->hide();
  });
}

void PopTip::hide(bool /*forced*/) {
  removeFromSuperview();
}
