#include "hosts/desktop/MediaPlayer.h"

#include <QDBusConnectionInterface>
#include <QGuiApplication>

#include <mediaplayeradaptor.h>

#include <array>
#include <cmath>
#include <utility>

namespace desktop {

namespace {

// Fixed by MPRIS 2.2.
const auto objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const auto playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");
const auto serviceOfFilm = QStringLiteral("org.mpris.MediaPlayer2.quillop.film%1");

const std::array<std::pair<const char*, QVariant>, 12> lastingProperties{{{"CanQuit", true},
                                                                          {"CanRaise", true},
                                                                          {"HasTrackList", false},
                                                                          {"SupportedUriSchemes", QStringList()},
                                                                          {"SupportedMimeTypes", QStringList()},
                                                                          {"MinimumRate", 1.0},
                                                                          {"MaximumRate", 1.0},
                                                                          {"CanGoNext", false},
                                                                          {"CanGoPrevious", false},
                                                                          {"CanPlay", true},
                                                                          {"CanPause", true},
                                                                          {"CanControl", true}}};

/// For how long the bus may keep the app from ending, in milliseconds.
constexpr int patience = 5000;

qlonglong microseconds(double seconds) {
  return std::llround(seconds * 1e6);
}

double seconds(qlonglong microseconds) {
  return static_cast<double>(microseconds) * 1e-6;
}

}  // namespace

MediaPlayer::MediaPlayer(Setting setting)
    : setting_(std::move(setting)),
      connectionName_(QStringLiteral("quillop-film%1").arg(setting_.number)),
      bus_(connectionName_) {
  for (const auto& [name, value] : lastingProperties) setProperty(name, value);
  setProperty("Identity", setting_.identity);
  setProperty("DesktopEntry", QGuiApplication::desktopFileName());
  new MediaPlayer2Adaptor(this);
  new PlayerAdaptor(this);
}

MediaPlayer::~MediaPlayer() {
  // A connection is closed some time later, and the bus may read what others send before it sees that.
  leave();
  QDBusConnection::disconnectFromBus(connectionName_);
}

void MediaPlayer::tell(const std::optional<FilmState>& state, const QString& title) {
  const auto propertiesBefore = changeableProperties();
  const auto before = std::exchange(state_, state);
  if (!state_) return leave();
  const bool isAnother = !before || before->load != state_->load;
  if (isAnother) {
    title_ = title;
    artwork_ = setting_.artwork(state_->url);
  }
  if (service_.isEmpty()) return join();
  announceChangesSince(propertiesBefore);
  if (!isAnother && before->jumps != state_->jumps) emit Seeked(position());
}

void MediaPlayer::join() {
  if (!connectToBus() || !bus_.registerObject(objectPath, this)) return;
  // Last, since whoever sees the name asks at once.
  if (!takeName()) bus_.unregisterObject(objectPath);
}

/// The connection stays when the film goes: the next one comes, and whoever closed it gets an answer.
bool MediaPlayer::connectToBus() {
  if (bus_.isConnected()) return true;
  QDBusConnection::disconnectFromBus(connectionName_);
  bus_ = QDBusConnection::connectToBus(setting_.bus, connectionName_);
  if (!bus_.isConnected()) return false;
  bus_.interface()->setTimeout(patience);
  return true;
}

bool MediaPlayer::takeName() {
  const QString name = serviceOfFilm.arg(setting_.number);
  const QString ownName = QStringLiteral("%1.instance%2").arg(name).arg(QCoreApplication::applicationPid());
  for (const QString& each : {name, ownName}) {
    if (!bus_.registerService(each)) continue;
    service_ = each;
    return true;
  }
  return false;
}

void MediaPlayer::leave() {
  if (service_.isEmpty()) return;
  bus_.unregisterService(std::exchange(service_, QString()));
  bus_.unregisterObject(objectPath);
}

QVariantMap MediaPlayer::changeableProperties() const {
  QVariantMap properties;
  for (const char* name : {"PlaybackStatus", "Metadata", "Volume", "CanSeek"}) {
    properties.insert(QString::fromLatin1(name), property(name));
  }
  return properties;
}

void MediaPlayer::announceChangesSince(const QVariantMap& before) const {
  QVariantMap changed = changeableProperties();
  changed.removeIf([&](auto entry) { return before.value(entry.key()) == entry.value(); });
  if (changed.isEmpty()) return;
  auto signal = QDBusMessage::createSignal(objectPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                           QStringLiteral("PropertiesChanged"));
  signal << playerInterface << changed << QStringList();
  bus_.send(signal);
}

QString MediaPlayer::playbackStatus() const {
  if (!state_) return QStringLiteral("Stopped");
  return state_->isPlaying ? QStringLiteral("Playing") : QStringLiteral("Paused");
}

QVariantMap MediaPlayer::metadata() const {
  if (!state_) return {};
  QVariantMap metadata{{QStringLiteral("mpris:trackid"), QVariant::fromValue(trackOf(state_->load))},
                       {QStringLiteral("xesam:title"), title_},
                       {QStringLiteral("xesam:url"), QString::fromStdString(state_->url)}};
  if (canSeek()) metadata.insert(QStringLiteral("mpris:length"), microseconds(state_->length));
  if (!artwork_.isEmpty()) metadata.insert(QStringLiteral("mpris:artUrl"), artwork_);
  return metadata;
}

QDBusObjectPath MediaPlayer::trackOf(std::uint64_t load) const {
  return QDBusObjectPath(QStringLiteral("/quillop/film%1/%2").arg(setting_.number).arg(load));
}

qlonglong MediaPlayer::position() const {
  return state_ ? microseconds(state_->positionAt(FilmState::Clock::now())) : 0;
}

void MediaPlayer::ask(Wish wish) {
  const auto call = message();
  setDelayedReply(true);
  const bool isTaken = setting_.submit(std::move(wish), [this, call] {
    QMetaObject::invokeMethod(this, [this, call] { answer(call, call.createReply()); });
  });
  if (!isTaken) answer(call, call.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many calls")));
}

void MediaPlayer::answer(const QDBusMessage& call, const QDBusMessage& reply) const {
  if (call.isReplyRequired()) bus_.send(reply);
}

void MediaPlayer::Raise() {
  setting_.submit([raise = setting_.raise](Film&) { raise(); }, [] {});
}

void MediaPlayer::Quit() {
  setting_.submit([quit = setting_.quit](Film&) { quit(); }, [] {});
}

void MediaPlayer::Play() {
  ask([](Film& film) { film.play(); });
}

void MediaPlayer::Pause() {
  ask([](Film& film) { film.pause(); });
}

void MediaPlayer::PlayPause() {
  ask([](Film& film) { film.playOrPause(); });
}

void MediaPlayer::Stop() {
  ask([](Film& film) { film.close(); });
}

void MediaPlayer::Seek(qlonglong offset) {
  if (canSeek()) ask([offset](Film& film) { film.moveBy(seconds(offset)); });
}

void MediaPlayer::SetPosition(const QDBusObjectPath& trackId, qlonglong position) {
  if (!canSeek() || trackId != trackOf(state_->load)) return;
  if (position < 0 || position > microseconds(state_->length)) return;
  ask([load = state_->load, position](Film& film) {
    // Another film may have been chosen meanwhile.
    if (film.state() && film.state()->load == load) film.moveTo(seconds(position));
  });
}

void MediaPlayer::OpenUri(const QString& /*uri*/) {
  sendErrorReply(QDBusError::NotSupported, QStringLiteral("Films are chosen in the app"));
}

void MediaPlayer::setRate(double rate) {
  if (rate == 0) setting_.submit([](Film& film) { film.pause(); }, [] {});
}

void MediaPlayer::setVolume(double volume) {
  setting_.submit([volume](Film& film) { film.setVolume(volume); }, [] {});
}

}  // namespace desktop
