#include "tests/support/Stage.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

CGRect wholeOf(const UIView& view) {
  return {{0, 0}, view.frame().size};
}

}  // namespace

TEST(SplitLayout, ChangeOfTraitsLogsAndFitsEachLayerToItsOwnView) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.load(2, "b.mp4");
  stage.takeLines();
  const auto before = stage.filmView(1)->frame();
  stage.event([&] { stage.window()->setSize({390, 844}); });
  EXPECT_THAT(stage.takeLines(), ElementsAre("cambia orientamento"));
  EXPECT_NE(stage.filmView(1)->frame(), before);
  EXPECT_EQ(stage.fields().layer(1)->frame(), wholeOf(*stage.filmView(1)));
  EXPECT_EQ(stage.fields().layer(2)->frame(), wholeOf(*stage.filmView(2)));
}

TEST(SplitLayout, FittingWaitsForTheNextTurn) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto before = stage.fields().layer(1)->frame();
  {
    const RunLoop::Turn turn(RunLoop::main());
    stage.window()->setSize({390, 844});
  }
  EXPECT_EQ(stage.fields().layer(1)->frame(), before);
  EXPECT_NE(stage.filmView(1)->frame().size, before.size);
  stage.advance(0);
  EXPECT_EQ(stage.fields().layer(1)->frame(), wholeOf(*stage.filmView(1)));
}

TEST(SplitLayout, RotationWithoutAChangeOfTraitsNeitherLogsNorFits) {
  Stage stage(Stage::NotLaunched);
  stage.host.screen.resizable = false;
  stage.host.screen.size = {1280, 800};
  stage.launch();
  stage.load(1, "a.mp4");
  const auto before = stage.fields().layer(1)->frame();
  stage.takeLines();
  stage.event([&] { stage.window()->setSize({800, 1280}); });
  EXPECT_THAT(stage.takeLines(), IsEmpty());
  EXPECT_NE(stage.filmView(1)->frame().size, before.size);
  EXPECT_EQ(stage.fields().layer(1)->frame(), before);
  stage.load(1, "b.mp4");
  EXPECT_EQ(stage.fields().layer(1)->frame(), wholeOf(*stage.filmView(1)));
}

TEST(SplitLayout, ChangeWithoutVideosOnlyLogs) {
  Stage stage;
  stage.event([&] { stage.window()->setSize({390, 844}); });
  EXPECT_THAT(stage.takeLines(), ElementsAre("cambia orientamento"));
  EXPECT_THAT(stage.takeCalls(), IsEmpty());
  EXPECT_EQ(stage.fields().layer(1), nullptr);
  EXPECT_EQ(stage.fields().layer(2), nullptr);
}

TEST(SplitLayout, OnlyTheLoadedFilmIsFitted) {
  Stage stage;
  stage.load(2, "b.mp4");
  stage.event([&] { stage.window()->setSize({844, 390}); });
  EXPECT_EQ(stage.fields().layer(2)->frame(), wholeOf(*stage.filmView(2)));
  EXPECT_EQ(stage.fields().layer(1), nullptr);
}

TEST(SplitLayout, LayoutPassesNeverTouchTheLayers) {
  Stage stage;
  stage.load(1, "a.mp4");
  const auto odd = CGRectMake(0, 0, 11, 13);
  stage.fields().layer(1)->setFrame(odd);
  stage.event([&] { stage.screen().view()->setNeedsLayout(); });
  EXPECT_EQ(stage.fields().layer(1)->frame(), odd);
}

TEST(SplitLayout, SeveralChangesBeforeTheQueueRunsFitOnceEach) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.takeLines();
  {
    const RunLoop::Turn turn(RunLoop::main());
    stage.window()->setSize({500, 900});
    stage.window()->setSize({900, 500});
  }
  stage.advance(0);
  EXPECT_THAT(stage.takeLines(), ElementsAre("cambia orientamento", "cambia orientamento"));
  EXPECT_EQ(stage.fields().layer(1)->frame(), wholeOf(*stage.filmView(1)));
}

TEST(SplitLayout, FilmsLieSideBySideInLandscapeAndOneAboveTheOtherInPortrait) {
  Stage stage;
  const auto frame = [&](int film) { return stage.filmView(film)->frame(); };
  stage.event([&] { stage.window()->setSize({844, 390}); });
  EXPECT_EQ(frame(1).origin.y, frame(2).origin.y);
  EXPECT_LT(frame(1).origin.x, frame(2).origin.x);
  stage.event([&] { stage.window()->setSize({390, 844}); });
  EXPECT_EQ(frame(1).origin.x, frame(2).origin.x);
  EXPECT_LT(frame(1).origin.y, frame(2).origin.y);
}

TEST(SplitLayoutDeathTest, LayerWithoutItsFilmViewStopsTheApp) {
  Stage stage;
  stage.load(1, "a.mp4");
  stage.screen().vistaFilm1 = nullptr;
  EXPECT_DEATH(stage.screen().adattaLayerFilm(), "a film's view");
}
