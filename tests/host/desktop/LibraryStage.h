#pragma once

#include "hosts/desktop/GuardedLibrary.h"
#include "tests/host/desktop/FakeLibrary.h"
#include "tests/host/qtquick/ScreenStage.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <utility>

namespace desktop {

/// The app on the real screen, with a fake media library that may be read.
class LibraryStage {
 public:
  explicit LibraryStage(GuardedLibrary::Wait wait = {}, ScreenStage::Options options = {})
      : stage(std::move(options)), wait_(std::move(wait)) {
    access.setAnswer(LibraryAccess::Answer::Authorised);
    stage.window().requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&stage.window()));
    stage.settle();
  }

  /// The library tells that it has changed, and the screen follows.
  void tellChange() {
    if (facts.changed) facts.changed();
    stage.settle();
  }
  void key(Qt::Key key) {
    QTest::keyClick(&stage.window(), key);
    stage.settle();
  }
  void click(const QString& name) {
    ASSERT_NE(stage.named(name), nullptr) << qPrintable(name);
    QTest::mouseClick(&stage.window(), Qt::LeftButton, {}, middleOf(*stage.named(name)));
    stage.settle();
  }
  /// Waits with a generous deadline, in real time.
  static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 20000); }
  QAccessibleInterface* accessible(const QString& name) {
    auto* const item = stage.named(name);
    return item != nullptr ? QAccessible::queryAccessibleInterface(item) : nullptr;
  }
  QRectF placeOf(const QString& name) {
    auto* const item = stage.named(name);
    return item != nullptr ? item->mapRectToScene(item->boundingRect()) : QRectF();
  }

  QTemporaryDir folder;
  LibraryFacts facts;
  ScreenStage stage;
  Layers layers{stage.host()};
  LibraryAccess access{
      folder.filePath(QStringLiteral("library.json")), {}, folder.filePath(QStringLiteral("Videos"))};

 private:
  GuardedLibrary::Wait wait_;

 public:
  GuardedLibrary library{stage.simulatedHost().mainLoop, access, [](auto) { ADD_FAILURE() << "asks"; }, wait_,
                         [this](auto folders) { return std::make_unique<FakeLibrary>(std::move(folders), facts); }};
};

}  // namespace desktop
