#include "hosts/desktop/AccessPrompt.h"

#include <utility>

namespace desktop {

AccessPrompt::AccessPrompt(Layers& layers, LibraryAccess& access) : layer_(layers) {
  connect(&access, &LibraryAccess::answered, this, [this] { close(std::nullopt); });
}

void AccessPrompt::ask(Answered answered) {
  if (isShown()) return;
  answered_ = std::move(answered);
  layer_.cover(QStringLiteral("AccessPrompt"), *this, [this] { close(std::nullopt); });
}

void AccessPrompt::close(std::optional<Answer> answer) {
  layer_.endLater([this, answer] { std::exchange(answered_, nullptr)(answer); });
}

}  // namespace desktop
