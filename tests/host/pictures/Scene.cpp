#include "tests/host/pictures/Scene.h"

#include <QDir>

#include <algorithm>

namespace {

/// Whether a picture in `item`, or in anything in it, is still to come.
bool awaitsPicture(const QQuickItem& item) {
  constexpr int loading = 2;  // Image.Loading
  const bool isImage = item.inherits("QQuickImageBase");
  if (isImage && item.property("status").toInt() == loading) return true;
  const auto children = item.childItems();
  return std::any_of(children.begin(), children.end(), [](const auto* child) { return awaitsPicture(*child); });
}

}  // namespace

Scene::Scene(Options options)
    : textScale_("QUILLOP_TEXT_SCALE", options.textScale),
      highContrast_("QUILLOP_HIGH_CONTRAST", options.highContrast),
      there_({}, {options.size, options.titles.size(), options.isFirstRun, options.titles}) {
  for (const auto* name : {"Videos", "Films", "Camera", "Documents"})
    QDir(there_.folder.path()).mkpath(QLatin1String(name));
  // The pointer is on nothing.
  QTest::mouseMove(&stage().window(), QPoint(0, options.size.height() - 1));
  stage().settle();
}

void Scene::playBoth() {
  for (const int film : {1, 2}) stage().load(film);
}

void Scene::tab(int times) {
  for (int time = 0; time < times; ++time) there_.key(Qt::Key_Tab);
}

void Scene::hover(const QString& name) {
  ASSERT_NE(stage().named(name), nullptr) << qPrintable(name);
  QTest::mouseMove(&stage().window(), middleOf(*stage().named(name)));
  stage().settle();
}

void Scene::openSettings() {
  settings_.open();
  stage().settle();
}

void Scene::openMenu() {
  menu_.open();
  stage().settle();
}

void Scene::index(std::size_t done, std::size_t total) {
  facts().progress = {done, total, 118.0};
  there_.tellChange();
}

void Scene::waitForLibrary() {
  bar_.setHeldBack(true);
  facts().contents = {0, 3880, 0, false};
  facts().progress = {120, 4000, 118.0};
  wait_.begin(there_.library, [](bool) {});
  EXPECT_TRUE(desktop::LibraryStage::waitFor([this] { return wait_.isShown(); }));
  facts().contents = {37, 3880, 0, false};
  there_.tellChange();
  stage().settle();
}

bool Scene::isLoading() {
  stage().settle();
  return awaitsPicture(*stage().window().contentItem());
}

QImage Scene::picture() {
  EXPECT_TRUE(desktop::LibraryStage::waitFor([this] { return !isLoading(); }));
  return stage().grab();
}
