#pragma once

#include "hosts/desktop/Film.h"

#include <QObject>

#include <memory>
#include <vector>

namespace desktop {

/// The films of the main screen, which it looks at when a turn ends. Main thread.
class Films final : public QObject {
  Q_OBJECT

 public:
  /// The platform that `controls` belong to outlives the films.
  explicit Films(const std::vector<FilmControls>& controls);
  ~Films() override;

  const std::vector<std::unique_ptr<Film>>& all() const { return films_; }
  /// The loaded one that was used last; none where none is loaded.
  Film* lastUsed() const;
  /// Pauses those that play, which is no use of them: the system asks for it. Inside a turn.
  void pause();

 signals:
  /// At least one film plays now, or none any more.
  void playingChanged(bool isPlaying);

 private:
  void noteUse(Film& film);
  void look();

  std::vector<std::unique_ptr<Film>> films_;
  std::vector<Film*> byUse_;  ///< the one used last first
  bool isPlaying_ = false;
};

}  // namespace desktop
