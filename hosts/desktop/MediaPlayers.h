#pragma once

#include "hosts/desktop/Films.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

/// The films as media players on the session bus, for the desktop's media panel, its media keys, the buttons of
/// earphones and programs such as playerctl. Everything that has to do with the bus happens in a thread of its own,
/// and what clients want is done a share at a time, each wish in a turn of its own.
///
/// Main thread. Does nothing where there is no bus.
class MediaPlayers final : public QObject {
  Q_OBJECT

 public:
  struct Setting {
    QString bus;                  ///< the address of the session bus, empty for none
    std::function<void()> raise;  ///< brings the app to the front
    std::function<void()> quit;   ///< ends the app
    /// What the library calls the video.
    std::function<QString(const std::string& url)> title;
    /// The file that holds the picture of a video, as an address; empty where there is none. Called in the thread.
    std::function<QString(const std::string& url)> artwork;
  };

  /// `films` outlives the players. Returns at once; the bus is looked for when the first film is loaded.
  MediaPlayers(Films& films, Setting setting);
  /// Returns when the players are gone from the bus.
  ~MediaPlayers() override;

 private:
  struct Seat;

  void add(Film& film);
  void tell(Seat& seat);

  Setting setting_;
  std::vector<std::unique_ptr<Seat>> seats_;
  QThread thread_;
};

}  // namespace desktop
