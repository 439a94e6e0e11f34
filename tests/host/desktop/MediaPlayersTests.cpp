#include "hosts/desktop/MediaPlayers.h"

#include "hosts/desktop/Inbox.h"
#include "tests/host/desktop/MediaClient.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

#include <QDBusServiceWatcher>
#include <QGuiApplication>

#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <thread>

namespace desktop {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

constexpr qlonglong second = 1'000'000;

class MediaPlayersTest : public testing::Test {
 protected:
  MediaPlayers::Setting setting(const QString& address) {
    return {.bus = address,
            .raise = [this] { ++raised; },
            .quit = [this] { ++quits; },
            .title = [](const std::string& url) { return QString::fromStdString("Title of " + url); },
            .artwork = [this](const std::string&) { return artwork; }};
  }
  void start() { players = std::make_unique<MediaPlayers>(films, setting(bus.address())); }
  void startAndLoad(int film) {
    if (!players) start();
    load(film);
    client(film).waitUntilThere();
  }
  void load(int film) { stage.load(film, film == 1 ? "uno.mp4" : "due.mp4"); }
  MediaClient& client(int film) { return film == 1 ? client1 : client2; }
  bool plays(int film) { return stage.fields().audio(film)->isPlaying(); }
  /// Everything that was told until now has arrived.
  void settle() {
    client1.get("Rate");
    client2.get("Rate");
  }
  /// Once the films are paused: while one plays, it counts as moved wherever time has passed, since it stands here.
  void forgetSeeks() {
    settle();
    client1.seeks.clear();
  }
  Lines seeks(const Lines& calls) {
    Lines found;
    for (const auto& call : calls) {
      if (call.find("video seek") != std::string::npos) found.push_back(call);
    }
    return found;
  }

  PrivateBus bus;
  Stage stage;
  Films films{stage.screen().films()};
  int raised = 0;
  int quits = 0;
  QString artwork;
  MediaClient client1{bus.connection("client"), "org.mpris.MediaPlayer2.quillop.film1"};
  MediaClient client2{bus.connection("client"), "org.mpris.MediaPlayer2.quillop.film2"};
  std::unique_ptr<MediaPlayers> players;
};

TEST_F(MediaPlayersTest, AFilmIsAPlayerFromItsLoadToItsEnd) {
  start();
  load(1);
  client1.waitUntilThere();
  EXPECT_FALSE(client2.isThere());
  load(2);
  client2.waitUntilThere();
  stage.reportEnd("uno.mp4 video");
  client1.waitUntilGone();
  EXPECT_TRUE(client2.isThere());
  load(1);
  client1.waitUntilThere();
  EXPECT_EQ(client1.get("PlaybackStatus"), "Playing");
}

TEST_F(MediaPlayersTest, ThePlayersAreGoneWhenTheAppEnds) {
  startAndLoad(1);
  players.reset();
  EXPECT_FALSE(client1.isThere());
}

TEST_F(MediaPlayersTest, ThePlayersAreGoneWhenTheAppEndsAlsoFromABusThatIsBehind) {
  startAndLoad(1);
  bus.suspend();
  for (int time = 0; time < 20; ++time) stage.press(stage.playPause(1));
  std::jthread later([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    bus.resume();
  });
  players.reset();
  EXPECT_FALSE(client1.isThere());
}

TEST_F(MediaPlayersTest, TheyIntroduceThemselves) {
  QGuiApplication::setDesktopFileName("example.app.App");
  startAndLoad(1);
  startAndLoad(2);
  EXPECT_EQ(client1.get("Identity", MediaClient::root), QString("Quillop – Film 1"));
  EXPECT_EQ(client2.get("Identity", MediaClient::root), QString("Quillop – Film 2"));
  EXPECT_EQ(client1.get("DesktopEntry", MediaClient::root), "example.app.App");
  for (const auto* able : {"CanQuit", "CanRaise"}) EXPECT_EQ(client1.get(able, MediaClient::root), true) << able;
  EXPECT_EQ(client1.get("HasTrackList", MediaClient::root), false);
  for (const auto* list : {"SupportedUriSchemes", "SupportedMimeTypes"}) {
    EXPECT_EQ(client1.get(list, MediaClient::root), QStringList()) << list;
  }
  for (const auto* able : {"CanPlay", "CanPause", "CanSeek", "CanControl"})
    EXPECT_EQ(client1.get(able), true) << able;
  for (const auto* unable : {"CanGoNext", "CanGoPrevious"}) EXPECT_EQ(client1.get(unable), false) << unable;
  for (const auto* rate : {"Rate", "MinimumRate", "MaximumRate"}) EXPECT_EQ(client1.get(rate), 1.0) << rate;
}

TEST_F(MediaPlayersTest, TheyTellWhichFilmItIs) {
  artwork = "file:///thumbnails/uno.png";
  stage.host.mediaEngine.factsByUrl[Stage::url("uno.mp4")] = simulated::filmFacts(90.5);
  startAndLoad(1);
  const auto metadata = client1.metadata();
  EXPECT_EQ(metadata.value("xesam:title"), "Title of file:///videos/uno.mp4");
  EXPECT_EQ(metadata.value("xesam:url"), "file:///videos/uno.mp4");
  EXPECT_EQ(metadata.value("mpris:artUrl"), artwork);
  EXPECT_EQ(metadata.value("mpris:length"), QVariant::fromValue(90'500'000LL));
  EXPECT_TRUE(client1.track().path().startsWith("/quillop/film1/"));
}

TEST_F(MediaPlayersTest, WhatIsNotKnownIsNotTold) {
  stage.host.mediaEngine.factsByUrl[Stage::url("uno.mp4")] = simulated::filmFacts(0);
  startAndLoad(1);
  EXPECT_THAT(client1.metadata().keys(), ElementsAre("mpris:trackid", "xesam:title", "xesam:url"));
  EXPECT_EQ(client1.get("CanSeek"), false);
  stage.takeCalls();
  client1.tell("Seek", {10 * second});
  client1.tell("SetPosition", {QVariant::fromValue(client1.track()), 0LL});
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
}

TEST_F(MediaPlayersTest, PlayingAndPausingOneLeavesTheOtherAlone) {
  startAndLoad(1);
  startAndLoad(2);
  client1.tell("Pause");
  EXPECT_FALSE(plays(1));
  EXPECT_EQ(client1.get("PlaybackStatus"), "Paused");
  client1.tell("Pause");
  EXPECT_FALSE(plays(1));
  client1.tell("PlayPause");
  EXPECT_TRUE(plays(1));
  EXPECT_EQ(client1.get("PlaybackStatus"), "Playing");
  client1.tell("Play");
  EXPECT_TRUE(plays(1));
  EXPECT_TRUE(plays(2));
  settle();
  EXPECT_EQ(client1.changed, QVariantMap({{"PlaybackStatus", "Playing"}}));
  EXPECT_THAT(client2.changed, IsEmpty());
}

TEST_F(MediaPlayersTest, WhatThePersonDoesIsTold) {
  startAndLoad(1);
  stage.press(stage.playPause(1));
  stage.event([&] { stage.volume(1)->adjust(0.5F); });
  runUntil([&] { return client1.changed.size() == 2; });
  EXPECT_EQ(client1.changed, QVariantMap({{"PlaybackStatus", "Paused"}, {"Volume", 0.5}}));
  forgetSeeks();
  stage.event([&] { stage.position(1)->adjust(30); });
  runUntil([&] { return !client1.seeks.empty(); });
  EXPECT_THAT(client1.seeks, ElementsAre(30 * second));
  EXPECT_EQ(client1.get("Position"), 30 * second);
}

TEST_F(MediaPlayersTest, StopClosesTheFilmAndIsAnswered) {
  startAndLoad(1);
  startAndLoad(2);
  client1.tell("Stop");
  EXPECT_FALSE(stage.fields().audio(1));
  client1.waitUntilGone();
  EXPECT_TRUE(client2.isThere());
}

TEST_F(MediaPlayersTest, SeekingMovesToWholeSecondsAndIsTold) {
  startAndLoad(1);
  client1.tell("Pause");
  forgetSeeks();
  stage.setPosition("uno.mp4", 20.4);
  stage.takeCalls();
  client1.tell("Seek", {5 * second});
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 video seek 25", "uno.mp4 audio seek 25", "commit"));
  EXPECT_EQ(client1.get("Position"), 25 * second);
  client1.tell("SetPosition", {QVariant::fromValue(client1.track()), 12'600'000LL});
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 video seek 13", "uno.mp4 audio seek 13", "commit"));
  settle();
  EXPECT_THAT(client1.seeks, ElementsAre(25 * second, 13 * second));
}

TEST_F(MediaPlayersTest, SeekingStopsAtTheEnds) {
  startAndLoad(1);
  client1.tell("Pause");
  stage.takeCalls();
  client1.tell("Seek", {-5 * second});
  client1.tell("Seek", {std::numeric_limits<qlonglong>::min()});
  client1.tell("Seek", {std::numeric_limits<qlonglong>::max()});
  EXPECT_THAT(seeks(stage.takeCalls()),
              ElementsAre("uno.mp4 video seek 0", "uno.mp4 video seek 0", "uno.mp4 video seek 60"));
  EXPECT_EQ(client1.get("PlaybackStatus"), "Paused");
}

TEST_F(MediaPlayersTest, PositionsOutsideOfTheFilmOrOfAnotherOneAreIgnored) {
  startAndLoad(1);
  const auto stale = QVariant::fromValue(client1.track());
  load(1);
  runUntil([&] { return client1.changed.contains("Metadata"); });
  const auto track = QVariant::fromValue(client1.track());
  ASSERT_NE(track, stale);
  stage.takeCalls();
  const auto foreign = QVariant::fromValue(QDBusObjectPath("/org/mpris/MediaPlayer2/TrackList/NoTrack"));
  client1.tell("SetPosition", {stale, 10 * second});
  client1.tell("SetPosition", {foreign, 10 * second});
  client1.tell("SetPosition", {track, -1LL});
  client1.tell("SetPosition", {track, 60 * second + 1});
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  client1.tell("SetPosition", {track, 60 * second});
  EXPECT_THAT(seeks(stage.takeCalls()), ElementsAre("uno.mp4 video seek 60"));
}

TEST_F(MediaPlayersTest, TheVolumeIsTakenAsFarAsItIsOne) {
  startAndLoad(1);
  stage.takeCalls();
  const auto expectVolume = [&](double written, double expected) {
    client1.set("Volume", written);
    runUntil([&] { return client1.get("Volume") == expected; });
  };
  expectVolume(0.25, 0.25);
  client1.set("Volume", std::nan(""));
  expectVolume(-1, 0);
  expectVolume(std::numeric_limits<double>::infinity(), 1);
  client1.set("Volume", "loud");
  settle();
  EXPECT_THAT(stage.takeCalls(), ElementsAre("uno.mp4 audio volume 0.25", "commit", "uno.mp4 audio volume 0",
                                             "commit", "uno.mp4 audio volume 1", "commit"));
  EXPECT_EQ(client1.changed, QVariantMap({{"Volume", 1.0}}));
}

TEST_F(MediaPlayersTest, ARateOfZeroIsAPauseAndNoOtherRateIsTaken) {
  startAndLoad(1);
  client1.set("Rate", 2.0);
  settle();
  EXPECT_TRUE(plays(1));
  client1.set("Rate", 0.0);
  runUntil([&] { return client1.changed.value("PlaybackStatus") == "Paused"; });
  EXPECT_EQ(client1.get("Rate"), 1.0);
}

TEST_F(MediaPlayersTest, WhatTheyCannotDoHasNoEffect) {
  startAndLoad(1);
  stage.takeCalls();
  client1.tell("Next");
  client1.tell("Previous");
  const auto reply = client1.call(MediaClient::player, "OpenUri", {"file:///etc/passwd"});
  EXPECT_EQ(reply.errorName(), "org.freedesktop.DBus.Error.NotSupported");
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_TRUE(plays(1));
}

TEST_F(MediaPlayersTest, RaisingAndQuittingAreTheApps) {
  startAndLoad(2);
  client2.call(MediaClient::root, "Raise");
  runUntil([&] { return raised == 1; });
  EXPECT_EQ(quits, 0);
  client2.call(MediaClient::root, "Quit");
  runUntil([&] { return quits == 1; });
}

TEST_F(MediaPlayersTest, AFilmInThePlaceOfAnotherIsToldWithoutLeavingTheBus) {
  startAndLoad(1);
  bool hasLeft = false;
  QDBusServiceWatcher watcher(client1.service, client1.bus, QDBusServiceWatcher::WatchForUnregistration);
  QObject::connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, [&] { hasLeft = true; });
  client1.tell("Pause");
  forgetSeeks();
  // As short as this, it is never far from where it is expected, whatever time has passed since.
  stage.host.mediaEngine.factsByUrl[Stage::url("tre.mp4")] = simulated::filmFacts(0.5);
  stage.load(1, "tre.mp4");
  runUntil([&] { return client1.changed.contains("Metadata"); });
  EXPECT_EQ(client1.metadata().value("xesam:title"), "Title of file:///videos/tre.mp4");
  EXPECT_FALSE(hasLeft);
  EXPECT_THAT(client1.seeks, IsEmpty());
}

TEST_F(MediaPlayersTest, ASecondProgramHasItsOwnNames) {
  auto other = bus.connection("other");
  ASSERT_TRUE(other.registerService(client1.service));
  start();
  load(1);
  const MediaClient renamed(client1.bus, client1.service + QString(".instance%1").arg(getpid()));
  renamed.waitUntilThere();
  EXPECT_EQ(renamed.get("PlaybackStatus"), "Playing");
}

TEST_F(MediaPlayersTest, WhoCallsWithoutEndIsRefusedAndTheAppGoesOn) {
  startAndLoad(1);
  startAndLoad(2);
  stage.takeCalls();
  constexpr int calls = 2000;
  int answers = 0;
  int refusals = 0;
  int lost = 0;  // by the bus itself, which has limits too
  for (int number = 0; number < calls; ++number) {
    const auto call = QDBusMessage::createMethodCall(client1.service, MediaClient::path, MediaClient::player, "Seek");
    auto* const watcher = new QDBusPendingCallWatcher(client1.bus.asyncCall(QDBusMessage(call) << second), &client1);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, [&, watcher] {
      ++answers;
      if (watcher->isError()) ++(watcher->error().message() == "Too many calls" ? refusals : lost);
      watcher->deleteLater();
    });
  }
  runUntil([&] { return answers == calls; });
  EXPECT_GT(refusals, 0);
  EXPECT_EQ(static_cast<int>(seeks(stage.takeCalls()).size()), calls - refusals - lost)
      << "what is not refused is done";
  client2.tell("Pause");
  EXPECT_FALSE(plays(2));
}

TEST_F(MediaPlayersTest, ABusThatBreaksDownIsNoTroubleToTheFilms) {
  auto brittle = std::make_unique<PrivateBus>();
  players = std::make_unique<MediaPlayers>(films, setting(brittle->address()));
  load(2);
  MediaClient(brittle->connection("brittle"), client2.service).waitUntilThere();
  brittle.reset();
  stage.event([&] { films.pause(); });
  EXPECT_FALSE(plays(2));
  load(1);
  load(2);
  EXPECT_TRUE(plays(1) && plays(2));
}

TEST_F(MediaPlayersTest, TheyEndAtAnyMoment) {
  for (int time = 0; time < 20; ++time) {
    start();
    load(1);
    if (time % 2 == 0) client1.waitUntilThere();
    client1.bus.asyncCall(
        QDBusMessage::createMethodCall(client1.service, MediaClient::path, MediaClient::player, "Pause"));
    players.reset();
  }
  QCoreApplication::processEvents();
  EXPECT_FALSE(client1.isThere());
}

TEST(MediaPlayers, WithoutABusNothingHappens) {
  for (const auto* address : {"", "unix:path=/proc/no/such/socket", "nonsense"}) {
    Stage stage;
    Films films(stage.screen().films());
    const MediaPlayers players(films, {.bus = address,
                                       .raise = [] {},
                                       .quit = [] {},
                                       .title = [](const std::string&) { return QString(); },
                                       .artwork = [](const std::string&) { return QString(); }});
    stage.load(1, "uno.mp4");
    QCoreApplication::processEvents();
    EXPECT_TRUE(films.all()[0]->isPlaying());
  }
}

}  // namespace
}  // namespace desktop
