#include "hosts/desktop/MediaPlayers.h"

#include "hosts/desktop/Inbox.h"
#include "hosts/desktop/MediaPlayer.h"
#include "platform/foundation/RunLoop.h"

#include <utility>

namespace desktop {

/// What belongs to one film.
struct MediaPlayers::Seat {
  explicit Seat(Film& filmHere) : film(filmHere) {}

  Film& film;
  Inbox inbox;
  MediaPlayer* player = nullptr;  ///< lives, and dies, in the thread
  std::uint64_t load = 0;         ///< whose title is known
  QString title;
};

MediaPlayers::MediaPlayers(Films& films, Setting setting) : setting_(std::move(setting)) {
  if (setting_.bus.isEmpty()) return;
  thread_.setObjectName(QStringLiteral("media-players"));
  for (const auto& film : films.all()) add(*film);
  thread_.start();
}

MediaPlayers::~MediaPlayers() {
  thread_.quit();
  thread_.wait();
}

void MediaPlayers::add(Film& film) {
  auto& seat = *seats_.emplace_back(std::make_unique<Seat>(film));
  const auto submit = [&seat](MediaPlayer::Wish wish, std::function<void()> fulfilled) {
    return seat.inbox.put([&seat, wish = std::move(wish), fulfilled = std::move(fulfilled)] {
      {
        const RunLoop::Turn turn(RunLoop::main());
        wish(seat.film);
      }
      fulfilled();
    });
  };
  const QString identity = QStringLiteral("Quillop – %1").arg(QString::fromStdString(film.name()));
  seat.player = new MediaPlayer(
      {setting_.bus, film.number(), identity, setting_.raise, setting_.quit, submit, setting_.artwork});
  seat.player->moveToThread(&thread_);
  connect(&thread_, &QThread::finished, seat.player, &QObject::deleteLater);
  connect(&film, &Film::changed, this, [this, &seat] { tell(seat); });
}

void MediaPlayers::tell(Seat& seat) {
  const auto state = seat.film.state();
  if (state && state->load != seat.load) {
    seat.load = state->load;
    seat.title = setting_.title(state->url);
  }
  QMetaObject::invokeMethod(seat.player,
                            [player = seat.player, state, title = seat.title] { player->tell(state, title); });
}

}  // namespace desktop
