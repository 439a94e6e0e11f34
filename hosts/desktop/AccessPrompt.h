#pragma once

#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/Layers.h"

#include <QObject>
#include <QQuickItem>

#include <memory>
#include <optional>

namespace desktop {

/// Asks the user whether the app may read the media library. Main thread.
class AccessPrompt final : public QObject {
  Q_OBJECT

 public:
  using Answer = LibraryAccess::Answer;
  using Answered = std::function<void(std::optional<Answer>)>;

  explicit AccessPrompt(Layers& layers) : layers_(layers) {}

  /// Shows the question over everything else and calls `answered` once it has left the screen; never when the prompt
  /// is destroyed before. Does nothing while it is shown already.
  void ask(Answered answered);
  bool isShown() const { return layer_ != nullptr; }

  // For the layer. They take effect once the event that led here is dealt with, since they end the layer.
  Q_INVOKABLE void allow() { closeLater(Answer::Authorised); }
  Q_INVOKABLE void deny() { closeLater(Answer::Denied); }

 private:
  void closeLater(std::optional<Answer> answer);
  void close(std::optional<Answer> answer);

  Layers& layers_;
  Answered answered_;
  std::unique_ptr<QQuickItem> layer_;
};

}  // namespace desktop
