#include "tests/host/qtquick/ScreenStage.h"

#include "platform/uikit/UILabel.h"

#include <gtest/gtest.h>

#include <QMetaProperty>

#include <random>

namespace {

/// Everything that is to be seen of an item and of what lies in it, one line an item.
QString pictureOf(const QQuickItem& item, int depth = 0) {
  QString text(depth, ' ');
  text += QString::fromLatin1(item.metaObject()->className()).section("_QMLTYPE", 0, 0).section("_QML_", 0, 0);
  text += QStringLiteral(" %1 %2 %3 %4 %5 %6")
              .arg(item.x())
              .arg(item.y())
              .arg(item.width())
              .arg(item.height())
              .arg(item.isVisible())
              .arg(item.isEnabled());
  for (const char* name : {"color", "radius", "text", "value", "clip", "source"}) {
    const QVariant value = item.property(name);
    if (value.isValid()) text += QStringLiteral(" %1=%2").arg(QLatin1String(name), value.toString());
  }
  text += '\n';
  for (const auto* child : item.childItems()) text += pictureOf(*child, depth + 1);
  return text;
}

/// Changes a tree of views at random, as an app might.
class Gardener {
 public:
  Gardener(unsigned seed, Strong<UIView> root) : random_(seed), views_{std::move(root)} {}

  void change() {
    switch (number(7)) {
      case 0:
      case 1:
        add();
        break;
      case 2:
        remove();
        break;
      case 3:
        move();
        break;
      case 4:
        any()->setFrame({{number(300) * 1.0, number(200) * 1.0}, {number(200) * 1.0, number(150) * 1.0}});
        break;
      case 5:
        any()->setHidden(number(3) == 0);
        break;
      default:
        restyle(*any());
    }
  }

 private:
  int number(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
  /// Any view but the root.
  Strong<UIView> any() {
    return views_.size() < 2 ? add()
                             : views_[1 + static_cast<std::size_t>(number(static_cast<int>(views_.size()) - 1))];
  }

  Strong<UIView> create() {
    switch (number(5)) {
      case 0:
        return make<UILabel>();
      case 1:
        return make<UIButton>();
      case 2:
        return make<UISlider>();
      case 3:
        return make<UIImageView>();
      default:
        return make<UIView>();
    }
  }

  Strong<UIView> add() {
    const auto view = create();
    view->setFrame({{number(300) * 1.0, number(200) * 1.0}, {20.0 + number(200), 20.0 + number(150)}});
    views_[static_cast<std::size_t>(number(static_cast<int>(views_.size())))]->addSubview(view);
    views_.push_back(view);
    return view;
  }

  void remove() {
    const auto gone = any();
    gone->removeFromSuperview();
    std::erase_if(views_, [&](const auto& view) { return gone->contains(*view); });
  }

  /// Into another view, and with that to its top.
  void move() {
    const auto view = any();
    const auto& to = views_[static_cast<std::size_t>(number(static_cast<int>(views_.size())))];
    if (!view->contains(*to)) to->addSubview(view);
  }

  void restyle(UIView& view) {
    view.setBackgroundColor({number(256) / 255.0, number(256) / 255.0, number(256) / 255.0, 1});
    view.layer()->setCornerRadius(number(20));
    view.setClipsToBounds(number(2) == 0);
    if (auto* const label = dynamic_cast<UILabel*>(&view)) label->setText(std::to_string(number(1000)));
    if (auto* const slider = dynamic_cast<UISlider*>(&view)) slider->setValue(static_cast<float>(number(100)) / 100);
    if (auto* const button = dynamic_cast<UIButton*>(&view)) {
      button->setTitle_forState(std::to_string(number(1000)), UIControlState::Normal);
    }
    const auto layer = make<CALayer>();
    layer->setFrame({{0, 0}, {10, 10}});
    layer->setBackgroundColor(UIColor::whiteColor());
    if (number(3) == 0) view.layer()->insertSublayer_atIndex(layer, 0);
  }

  std::mt19937 random_;
  std::vector<Strong<UIView>> views_;
};

class Mirrored : public testing::TestWithParam<unsigned> {};

}  // namespace

TEST_P(Mirrored, TreesLookAsThoughTheyHadBeenBuiltAfresh) {
  ScreenStage stage;
  const auto garden = make<UIView>(CGRectMake(0, 60, 600, 400));
  stage.event([&] { stage.screen().view()->addSubview(garden); });
  Gardener gardener(GetParam(), garden);
  for (int round = 0; round < 12; ++round) {
    stage.event([&] {
      for (int change = 0; change < 10; ++change) gardener.change();
    });
    const QString mirrored = pictureOf(*stage.window().contentItem());
    stage.host().attach(nullptr);
    stage.settle();
    stage.host().attach(stage.platformWindow());
    stage.settle();
    ASSERT_EQ(mirrored.toStdString(), pictureOf(*stage.window().contentItem()).toStdString()) << "round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(RandomTrees, Mirrored, testing::Range(1U, 9U));

TEST(Mirror, ItemsGoWithTheirViews) {
  ScreenStage stage;
  const auto count = [&] { return pictureOf(*stage.window().contentItem()).count('\n'); };
  const auto before = count();
  const auto view = make<UIView>(CGRectMake(0, 0, 10, 10));
  view->addSubview(make<UILabel>());
  stage.event([&] { stage.screen().view()->addSubview(view); });
  EXPECT_GT(count(), before);
  stage.event([&] { view->removeFromSuperview(); });
  EXPECT_EQ(count(), before);
}

TEST(Mirror, ChangesOfOneTurnAreDrawnInTheNextFrame) {
  ScreenStage stage;
  const auto view = make<UIView>(CGRectMake(300, 200, 50, 50));
  view->setBackgroundColor({1, 0, 0, 1});
  stage.event([&] { stage.screen().view()->addSubview(view); });
  EXPECT_EQ(stage.grab().pixelColor(325, 225), QColor(255, 0, 0));
  {
    const RunLoop::Turn turn(RunLoop::main());
    view->setBackgroundColor({0, 1, 0, 1});
  }
  EXPECT_EQ(stage.grab().pixelColor(325, 225), QColor(0, 255, 0));
}

TEST(Mirror, LaterViewsLieAboveEarlierOnes) {
  ScreenStage stage;
  const auto below = make<UIView>(CGRectMake(300, 200, 50, 50));
  const auto above = make<UIView>(CGRectMake(300, 200, 50, 50));
  below->setBackgroundColor({1, 0, 0, 1});
  above->setBackgroundColor({0, 1, 0, 1});
  stage.event([&] {
    stage.screen().view()->addSubview(below);
    stage.screen().view()->addSubview(above);
  });
  EXPECT_EQ(stage.grab().pixelColor(325, 225), QColor(0, 255, 0));
  stage.event([&] { stage.screen().view()->addSubview(below); });
  EXPECT_EQ(stage.grab().pixelColor(325, 225), QColor(255, 0, 0));
}
