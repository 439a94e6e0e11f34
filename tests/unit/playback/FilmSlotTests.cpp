#include "platform/uikit/UIStoryboard.h"
#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// The same bases and 25 references: the screen has room for nothing more.
class SameSize : public UIViewController, public passoVideoProtocol {
 public:
  void passoVideo(const Strong<NSURL>&, bool) override {}
  Strong<NSObject> fields[25];
};

}  // namespace

TEST(FilmSlot, ScreenHasExactly25Fields) {
  EXPECT_EQ(sizeof(ViewController), sizeof(SameSize));
}

TEST(FilmSlot, FreshScreenHasAllOptionalFieldsNullAndAPopTip) {
  const Stage stage;
  const auto screen = make<ViewController>();
  const ViewControllerFields fields{*screen};
  for (const int film : {1, 2}) {
    EXPECT_EQ(fields.audio(film), nullptr);
    EXPECT_EQ(fields.video(film), nullptr);
    EXPECT_EQ(fields.progressTimer(film), nullptr);
    EXPECT_EQ(fields.layer(film), nullptr);
    EXPECT_EQ(fields.overlayTimer(film), nullptr);
  }
  for (const auto& outlet :
       {screen->vistaFilm1, screen->vistaFilm2, screen->vistaControlliFilm1, screen->vistaControlliFilm2}) {
    EXPECT_EQ(outlet, nullptr);
  }
  EXPECT_EQ(screen->immagineBarraControlli1, nullptr);
  EXPECT_EQ(screen->immagineBarraControlli2, nullptr);
  EXPECT_EQ(screen->bottonePlayPausaFilm1, nullptr);
  EXPECT_EQ(screen->bottonePlayPausaFilm2, nullptr);
  EXPECT_EQ(screen->bottoneChiudiFilm1, nullptr);
  EXPECT_EQ(screen->bottoneChiudiFilm2, nullptr);
  EXPECT_EQ(screen->volumeSlider1, nullptr);
  EXPECT_EQ(screen->volumeSlider2, nullptr);
  EXPECT_EQ(screen->progressSlider1, nullptr);
  EXPECT_EQ(screen->progressSlider2, nullptr);
  EXPECT_NE(fields.popTip(), nullptr);
}

TEST(FilmSlot, ScreenFromTheInterfaceResourceStartsTheSameWay) {
  const Stage stage;
  const auto screen = make<ViewController>(NSCoder());
  const ViewControllerFields fields{*screen};
  EXPECT_EQ(screen->vistaFilm1, nullptr);
  EXPECT_EQ(fields.audio(1), nullptr);
  EXPECT_NE(fields.popTip(), nullptr);
}

TEST(FilmSlot, ClosingAFilmOfAFreshScreenOnlyLogs) {
  Stage stage;
  const auto screen = make<ViewController>();
  screen->chiudiFilm1();
  screen->chiudiFilm2();
  EXPECT_THAT(stage.takeLines(), ElementsAre("----- ChiudiFilm1", "-------------- chiudiFilm chiudo il film ",
                                             "ChiudiFilm2", "-------------- chiudiFilm chiudo il film "));
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
}

TEST(FilmSlot, OutletsAreConnectedOnceTheViewHasLoaded) {
  const Stage stage;
  for (const int film : {1, 2}) {
    EXPECT_NE(stage.filmView(film), nullptr);
    EXPECT_NE(stage.overlay(film), nullptr);
    EXPECT_NE(stage.playPause(film), nullptr);
    EXPECT_NE(stage.close(film), nullptr);
    EXPECT_NE(stage.position(film), nullptr);
    EXPECT_NE(stage.volume(film), nullptr);
  }
  EXPECT_NE(stage.screen().immagineBarraControlli1, nullptr);
  EXPECT_NE(stage.screen().immagineBarraControlli2, nullptr);
}

TEST(FilmSlot, ControlsOfFilm1CarryTag1AndThoseOfFilm2Another) {
  const Stage stage;
  for (const int film : {1, 2}) {
    for (const Strong<UIView>& control : {Strong<UIView>(stage.playPause(film)), Strong<UIView>(stage.close(film)),
                                          Strong<UIView>(stage.position(film)), Strong<UIView>(stage.volume(film))}) {
      EXPECT_EQ(control->tag() == 1, film == 1);
    }
  }
}

TEST(FilmSlot, ReloadAfterCloseKeepsTheEmptiedLayerAboveTheNewOne) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto first = stage.fields().layer(1);
  stage.send(&ViewController::chiudiFilm, 1);
  stage.load(1, "b.mp4");
  const auto second = stage.fields().layer(1);
  EXPECT_NE(first, second);
  const auto sublayers = *stage.filmView(1)->layer()->sublayers();
  ASSERT_GE(sublayers.size(), 2U);
  EXPECT_EQ(sublayers[0], second);
  EXPECT_EQ(sublayers[1], first);
  EXPECT_THAT(*first->sublayers(), IsEmpty());
  EXPECT_EQ(first->player(), nullptr);
}

TEST(FilmSlot, LoadedFilmHasTheStateOfTheLoadedRow) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    const auto fields = stage.fields();
    ASSERT_TRUE(fields.audio(film));
    EXPECT_TRUE(fields.audio(film)->isPlaying());
    EXPECT_EQ(fields.audio(film)->pan(), film == 1 ? -1.0F : 1.0F);
    ASSERT_TRUE(fields.video(film));
    EXPECT_EQ(fields.video(film)->actionAtItemEnd(), AVPlayerActionAtItemEnd::None);
    ASSERT_TRUE(fields.video(film)->currentItem()->audioMix());
    EXPECT_EQ(fields.layer(film)->frame(), stage.filmView(film)->bounds());
    EXPECT_EQ(fields.layer(film)->player(), fields.video(film));
    EXPECT_TRUE(fields.progressTimer(film)->isValid());
    EXPECT_EQ(fields.progressTimer(film)->timeInterval(), 1.0);
    EXPECT_TRUE(fields.progressTimer(film)->repeats());
    EXPECT_EQ(stage.position(film)->minimumValue(), 0.0F);
    EXPECT_EQ(stage.position(film)->maximumValue(), 60.0F);
    EXPECT_TRUE(stage.position(film)->isContinuous());
    EXPECT_EQ(stage.playPause(film)->imageForState(UIControlState::Normal)->name(), "pause");
    EXPECT_EQ(fields.audio(3 - film), nullptr);
    EXPECT_EQ(fields.video(3 - film), nullptr);
  }
}

TEST(FilmSlot, ClosedFilmHasTheStateOfTheEmptyRow) {
  for (const int film : {1, 2}) {
    Stage stage;
    stage.load(film, "a.mp4");
    stage.advance(2.0);
    stage.send(&ViewController::chiudiFilm, film);
    const auto fields = stage.fields();
    EXPECT_EQ(fields.audio(film), nullptr);
    EXPECT_EQ(fields.video(film), nullptr);
    ASSERT_TRUE(fields.layer(film));
    EXPECT_EQ(fields.layer(film)->superlayer(), stage.filmView(film)->layer());
    EXPECT_THAT(*fields.layer(film)->sublayers(), IsEmpty());
    ASSERT_TRUE(fields.progressTimer(film));
    EXPECT_FALSE(fields.progressTimer(film)->isValid());
    EXPECT_EQ(stage.position(film)->value(), 0.0F);
    EXPECT_EQ(stage.playPause(film)->imageForState(UIControlState::Normal)->name(), "play");
    EXPECT_TRUE(stage.overlay(film)->isHidden());
  }
}

TEST(FilmSlot, ReplacingAFieldReleasesItsObject) {
  Stage stage;
  stage.load(2, "a.mp4");
  const Weak<AVAudioPlayer> audio = stage.fields().audio(2);
  const Weak<AVPlayer> video = stage.fields().video(2);
  stage.load(2, "b.mp4");
  EXPECT_TRUE(audio.expired());
  EXPECT_TRUE(video.expired());
}

TEST(FilmSlot, ScheduledProgressTimerKeepsTheScreenAlive) {
  Stage stage;
  auto screen = make<ViewController>();
  screen->progressSlider1 = make<UISlider>();
  const Weak<ViewController> weak = screen;
  const auto timer = NSTimer::scheduledTimerWithTimeInterval_target_selector_userInfo_repeats(
      1.0, screen, &ViewController::updateSliderWithSender, nullptr, true);
  screen = nullptr;
  EXPECT_FALSE(weak.expired());
  timer->invalidate();
  EXPECT_TRUE(weak.expired());
}

TEST(FilmSlot, FieldsAreReleasedInTheOrderOfTheirDeclaration) {
  Stage stage;
  Lines released;
  const auto witness = [&](const std::string& name, auto pointer) {
    using Object = typename decltype(pointer)::element_type;
    return Strong<Object>(pointer.get(), [&released, name, pointer](Object*) { released.push_back(name); });
  };
  auto screen = make<ViewController>();
  screen->progressSlider2 = witness("progressSlider2", make<UISlider>());
  screen->vistaFilm2 = witness("vistaFilm2", make<UIView>());
  screen->vistaControlliFilm1 = witness("vistaControlliFilm1", make<UIView>());
  screen->vistaFilm1 = witness("vistaFilm1", make<UIView>());
  screen->bottoneChiudiFilm2 = witness("bottoneChiudiFilm2", make<UIButton>());
  ViewControllerFields{*screen}.setLayer(1, witness("layer1", make<AVPlayerLayer>(nullptr)));
  screen = nullptr;
  EXPECT_THAT(released, ElementsAre("vistaFilm1", "vistaFilm2", "layer1", "vistaControlliFilm1", "bottoneChiudiFilm2",
                                    "progressSlider2"));
}
