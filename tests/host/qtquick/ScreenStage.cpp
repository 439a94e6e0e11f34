#include "tests/host/qtquick/ScreenStage.h"

#include "app/AppDelegate.h"
#include "platform/foundation/ClassRegistry.h"
#include "tutorial/Tutorial.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QPainter>
#include <QTest>

namespace {

constexpr std::uint64_t homeVideo = 8192;

QImage paintedArtwork(const std::string& path, int largestSide) {
  QImage image(largestSide, largestSide * 9 / 16, QImage::Format_RGB32);
  const auto hue = static_cast<int>(std::hash<std::string>{}(path) % 360);
  QPainter painter(&image);
  QLinearGradient gradient(0, 0, largestSide, image.height());
  gradient.setColorAt(0, QColor::fromHsv(hue, 150, 200));
  gradient.setColorAt(1, QColor::fromHsv((hue + 40) % 360, 180, 90));
  painter.fillRect(image.rect(), gradient);
  return image;
}

std::vector<host::LibraryItem> videos(std::size_t count, const std::vector<std::string>& titles) {
  std::vector<host::LibraryItem> items;
  for (std::size_t number = 0; number < count; ++number) {
    const std::string title = number < titles.size() ? titles[number] : "Video " + std::to_string(number);
    items.push_back({"file:///videos/" + std::to_string(number) + ".mp4", title, 60, "/videos/" + title + ".mp4"});
  }
  return items;
}

}  // namespace

ScreenStage::ScreenStage(Options options)
    : motion_(options.moves ? std::make_unique<Motion>() : nullptr),
      screen_(paintedArtwork,
              {.closed = {}, .hidden = {}, .shown = {}, .menuRequested = [this] { ++menusRequested_; }}) {
  host_.mediaLibrary.itemsByType[homeVideo] = videos(options.videos, options.titles);
  if (!options.isFirstRun) {
    host_.defaults.values = {{"primoAvvio", std::string("2")}, {"primoAvvio2", std::string("2")}};
  }
  screen_.setListedItems([this] { return host_.mediaLibrary.items(homeVideo); });
  window().resize(options.size);
  window().show();
  const bool isExposed = QTest::qWaitForWindowExposed(&window());
  Q_ASSERT(isExposed);
  platform_ = std::make_unique<Platform>(host::Ports{host_.mainLoop, host_.console, host_.defaults, host_.resources,
                                                     host_.desktop, host_.mail, host_.display, screen_, engine_,
                                                     host_.mediaLibrary});
  UIApplication::sharedApplication()->launch(NSStringFromClass<AppDelegate>());
  screen_.attach(platformWindow());
  settle();
  takeLines();
}

ScreenStage::~ScreenStage() {
  screen_.attach(nullptr);
  platform_.reset();
  // A request that nobody answered keeps the screen that asked, and with it players of the engine that goes next.
  host_.mediaLibrary.requests.clear();
}

const Strong<UIWindow>& ScreenStage::platformWindow() const {
  return UIApplication::sharedApplication()->delegate()->window();
}

ViewController& ScreenStage::screen() const {
  return dynamic_cast<ViewController&>(*platformWindow()->rootViewController());
}

void ScreenStage::advance(double seconds) {
  if (motion_) motion_->advance(seconds);
  host_.mainLoop.advance(seconds);
  settle();
}

void ScreenStage::settle() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
  host_.mainLoop.advance(0);
  window().grabWindow();  // draws one frame, everything before it included
  host_.mainLoop.advance(0);
  window().grabWindow();
}

void ScreenStage::event(const std::function<void()>& block) {
  {
    const RunLoop::Turn turn(RunLoop::main());
    block();
  }
  settle();
}

void ScreenStage::load(int film) {
  event([&] { screen().passoVideo(NSURL::URLWithString("file:///videos/film.mp4"), film == 1); });
}

void ScreenStage::toggleOverlay(int film) {
  event([&] { film == 1 ? screen().toccatoFilm1() : screen().toccatoFilm2(); });
}

Strong<ListaVideo> ScreenStage::openList() {
  event([&] { std::dynamic_pointer_cast<UIButton>(screen().view()->viewWithTag(5))->press(); });
  advance(UIWindow::transitionDuration);
  return std::dynamic_pointer_cast<ListaVideo>(platformWindow()->topmostViewController());
}

Strong<Info> ScreenStage::openInfo() {
  event([&] { screen().info(nullptr); });
  advance(UIWindow::transitionDuration);
  return std::dynamic_pointer_cast<Info>(platformWindow()->topmostViewController());
}

Strong<NFXIntroViewController> ScreenStage::openTutorial() {
  auto pager = makeTutorial();
  pager->setModalPresentationStyle(UIModalPresentationStyle::FullScreen);
  event([&] { screen().presentViewController_animated_completion(pager, true); });
  advance(UIWindow::transitionDuration);
  return pager;
}

void ScreenStage::resize(QSize size) {
  window().resize(size);
  settle();
}

namespace {

QQuickItem* findNamed(QAccessibleInterface* from, const QString& name) {
  if (from == nullptr) return nullptr;
  auto* const item = qobject_cast<QQuickItem*>(from->object());
  if (item != nullptr && from->text(QAccessible::Name) == name) return item;
  for (int child = 0; child < from->childCount(); ++child) {
    if (auto* const found = findNamed(from->child(child), name)) return found;
  }
  return nullptr;
}

}  // namespace

QQuickItem* ScreenStage::named(const QString& name) {
  return findNamed(QAccessible::queryAccessibleInterface(&window()), name);
}

QImage ScreenStage::grab() {
  return window().grabWindow();
}

QPoint middleOf(const QQuickItem& item) {
  return item.mapToScene({item.width() / 2, item.height() / 2}).toPoint();
}
