#pragma once

#include "hosts/desktop/Film.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <string>

namespace desktop {

/// One of the films on the session bus, where it is a media player of its own while a film is loaded: as the MPRIS
/// D-Bus Interface Specification 2.2 (freedesktop.org) describes it, `org.mpris.MediaPlayer2.quillop.filmN`. A second
/// program on the same bus has `.instancePID` behind its names.
///
/// A film that reaches its end is closed, so a player is never stopped: it is gone. Stop closes the film. There is no
/// next film, no list, and nothing but the person who chooses it opens a file.
///
/// Everything happens in one thread that may wait for the bus, but for what is said otherwise.
class MediaPlayer final : public QObject, protected QDBusContext {
  Q_OBJECT
  // What never changes is in dynamic properties.
  Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
  Q_PROPERTY(QVariantMap Metadata READ metadata)
  Q_PROPERTY(qlonglong Position READ position)
  Q_PROPERTY(bool CanSeek READ canSeek)
  Q_PROPERTY(double Rate READ rate WRITE setRate)
  Q_PROPERTY(double Volume READ volume WRITE setVolume)

 public:
  /// What a client wants of the film.
  using Wish = std::function<void(Film& film)>;

  struct Setting {
    QString bus;                  ///< the address of the session bus
    long number = 0;              ///< of the film
    QString identity;             ///< what people call the player
    std::function<void()> raise;  ///< brings the app to the front; on the main thread
    std::function<void()> quit;   ///< ends the app; on the main thread
    /// Has a wish fulfilled on the main thread, and calls `fulfilled` there once what came of it was told. False,
    /// without any effect, where there is too much to do.
    std::function<bool(Wish wish, std::function<void()> fulfilled)> submit;
    /// The file that holds the picture of a video, as an address; empty where there is none.
    std::function<QString(const std::string& url)> artwork;
  };

  /// Any thread; then it is to be moved to its own.
  explicit MediaPlayer(Setting setting);
  ~MediaPlayer() override;

  /// What there is to know of the film now; none where no film is loaded. The title is the library's.
  void tell(const std::optional<FilmState>& state, const QString& title);

  // The methods and properties of the interfaces, by their names there.
  void Raise();
  void Quit();
  void Next() {}
  void Previous() {}
  void Pause();
  void PlayPause();
  void Stop();
  void Play();
  void Seek(qlonglong offset);
  void SetPosition(const QDBusObjectPath& trackId, qlonglong position);
  void OpenUri(const QString& uri);

  QString playbackStatus() const;
  QVariantMap metadata() const;
  qlonglong position() const;
  bool canSeek() const { return state_ && state_->length > 0; }
  double rate() const { return 1.0; }
  void setRate(double rate);
  double volume() const { return state_ ? state_->volume : 0.0; }
  void setVolume(double volume);

 signals:
  void Seeked(qlonglong position);

 private:
  void join();
  bool connectToBus();
  bool takeName();
  void leave();
  QVariantMap changeableProperties() const;
  void announceChangesSince(const QVariantMap& before) const;
  QDBusObjectPath trackOf(std::uint64_t load) const;
  /// Answers the call that is being dealt with once the wish is fulfilled.
  void ask(Wish wish);
  void answer(const QDBusMessage& call, const QDBusMessage& reply) const;

  Setting setting_;
  QString connectionName_;
  QDBusConnection bus_;
  QString service_;  ///< its name on the bus; empty while it has none
  std::optional<FilmState> state_;
  QString title_;
  QString artwork_;
};

}  // namespace desktop
