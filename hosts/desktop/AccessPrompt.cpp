#include "hosts/desktop/AccessPrompt.h"

#include <QMetaObject>

#include <utility>

namespace desktop {

void AccessPrompt::ask(Answered answered) {
  if (isShown()) return;
  answered_ = std::move(answered);
  layer_ = layers_.open(QStringLiteral("AccessPrompt"), *this, [this] { closeLater(std::nullopt); });
}

void AccessPrompt::closeLater(std::optional<Answer> answer) {
  QMetaObject::invokeMethod(
      this, [this, answer] { close(answer); }, Qt::QueuedConnection);
}

void AccessPrompt::close(std::optional<Answer> answer) {
  if (!isShown()) return;  // two presses, of which the first one counts
  layer_ = nullptr;
  std::exchange(answered_, nullptr)(answer);
}

}  // namespace desktop
