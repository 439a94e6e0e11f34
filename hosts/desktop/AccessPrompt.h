#pragma once

#include "hosts/desktop/Layer.h"
#include "hosts/desktop/LibraryAccess.h"

#include <QObject>

#include <functional>
#include <optional>

namespace desktop {

/// Asks the user whether the app may read the media library. Main thread.
class AccessPrompt final : public QObject {
  Q_OBJECT

 public:
  using Answer = LibraryAccess::Answer;
  using Answered = std::function<void(std::optional<Answer>)>;

  /// Both outlive the prompt.
  AccessPrompt(Layers& layers, LibraryAccess& access);

  /// Shows the question over everything else and calls `answered` once it has left the screen; never when the prompt
  /// is destroyed before. Does nothing while it is shown already. It goes unanswered where the user gives the answer
  /// elsewhere.
  void ask(Answered answered);
  bool isShown() const { return layer_.isShown(); }

  // For the layer, which they end.
  Q_INVOKABLE void allow() { close(Answer::Authorised); }
  Q_INVOKABLE void deny() { close(Answer::Denied); }

 private:
  void close(std::optional<Answer> answer);

  Answered answered_;
  Layer layer_;
};

}  // namespace desktop
