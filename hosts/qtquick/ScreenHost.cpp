#include "hosts/qtquick/ScreenHost.h"

#include "hosts/qtquick/AccessibleTree.h"
#include "hosts/qtquick/ArtworkProvider.h"
#include "hosts/qtquick/Contrast.h"
#include "hosts/qtquick/Covers.h"
#include "hosts/qtquick/Decorations.h"
#include "hosts/qtquick/Mirror.h"
#include "hosts/qtquick/MotionSetting.h"
#include "hosts/qtquick/Pictures.h"
#include "hosts/qtquick/StageWindow.h"
#include "hosts/qtquick/TextSize.h"
#include "platform/foundation/RunLoop.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>

namespace qtquick {

namespace {

/// Calls its work once per frame in which it was asked for. Polishing is the last step before a frame is drawn, after
/// animations and input; what the work polishes itself is still part of the same frame.
class FrameWork final : public QQuickItem {
 public:
  FrameWork(QQuickItem* parent, std::function<void()> work) : QQuickItem(parent), work_(std::move(work)) {}

 protected:
  void updatePolish() override { work_(); }

 private:
  std::function<void()> work_;
};

}  // namespace

class ScreenHost::Implementation {
 public:
  Implementation(ArtworkLoader artwork, WindowEvents events, const host::Screen& screen)
      : menuRequested_(events.menuRequested),
        window_(std::move(events)),
        mirror_(engine_, *window_.contentItem(), screen, contrast_, [this] { return window_.focusReason(); }),
        frame_(window_.contentItem(), [this] { prepareFrame(); }),
        decorations_(*window_.contentItem()),
        covers_(
            *window_.contentItem(), [this] { return window_.focusReason(); }, [this] { noteCovers(); }) {
    share(*engine_.rootContext());
    // The engine owns its image providers.
    engine_.addImageProvider(QLatin1String(artworkProviderName), new ArtworkProvider(std::move(artwork)));
    const auto resized = [this] { frame_.polish(); };
    QObject::connect(&window_, &QWindow::widthChanged, &frame_, resized);
    QObject::connect(&window_, &QWindow::heightChanged, &frame_, resized);
    QObject::connect(&contrast_, &Contrast::changed, &frame_, [this] { mirror_.readAgain(); });
    QObject::connect(&window_, &StageWindow::escapePressed, &frame_, [this](bool& handled) { handled = escape(); });
    QObject::connect(&window_, &StageWindow::pressedTwice, &frame_, [this](QPointF point) {
      if (mirror_.isInBar(point)) window_.toggleFullScreen();
    });
    QObject::connect(&window_, &StageWindow::pressedLong, &frame_, [this](QPointF point) {
      if (mirror_.isInBar(point) && menuRequested_) menuRequested_();
    });
    QObject::connect(&window_, &StageWindow::menuKeyPressed, &frame_, [this](bool& handled) {
      handled = mirror_.isMainScreenInReach() && menuRequested_;
      if (handled) menuRequested_();
    });
  }

  StageWindow& window() { return window_; }
  const MotionSetting& motion() const { return motion_; }
  void needsFrame() { frame_.polish(); }
  void cover(QQuickItem& item, std::function<void()> escape) { covers_.add(item, std::move(escape)); }
  void decorate(QQuickItem& item) { decorations_.add(item); }

  void share(QQmlContext& context) {
    context.setContextProperty(QStringLiteral("contrast"), &contrast_);
    context.setContextProperty(QStringLiteral("textSize"), &textSize_);
  }
  void setListedItems(ListedItems items) { mirror_.setListedItems(std::move(items)); }

  void attach(const Strong<UIWindow>& window) {
    mirror_.setWindow(window);
    needsFrame();
  }

 private:
  void prepareFrame() {
    fitWindow();
    mirror_.pass();
    decorations_.setInReach(mirror_.isMainScreenInReach());
  }

  void fitWindow() {
    const auto window = mirror_.window();
    const CGSize size{static_cast<double>(window_.width()), static_cast<double>(window_.height())};
    if (!window || window->frame().size == size) return;
    const RunLoop::Turn turn(RunLoop::main());
    window->setSize(size);
  }

  void noteCovers() {
    mirror_.setInReach(covers_.isEmpty());
    needsFrame();
  }

  bool escape() {
    if (covers_.escape() || mirror_.escape()) return true;
    return (window_.windowStates() & Qt::WindowFullScreen) && window_.toggleFullScreen();
  }

  std::function<void()> menuRequested_;
  MotionSetting motion_;
  Contrast contrast_{PortalSetting::sessionBus()};
  TextSize textSize_;
  QQmlEngine engine_;
  StageWindow window_;
  AccessibleTree accessibleTree_{window_};
  Mirror mirror_;
  FrameWork frame_;
  Decorations decorations_;
  Covers covers_;
};

ScreenHost::ScreenHost(ArtworkLoader artwork, WindowEvents events)
    : implementation_(std::make_unique<Implementation>(std::move(artwork), std::move(events), *this)) {}

ScreenHost::~ScreenHost() = default;

QQuickWindow& ScreenHost::window() {
  return implementation_->window();
}

void ScreenHost::show() {
  if (isResizable()) {
    window().setVisible(true);  // `show` would leave full screen
  } else {
    window().showFullScreen();
  }
}

void ScreenHost::toggleFullScreen() {
  implementation_->window().toggleFullScreen();
}

void ScreenHost::attach(const Strong<UIWindow>& window) {
  implementation_->attach(window);
}

void ScreenHost::cover(QQuickItem& item, std::function<void()> escape) {
  implementation_->cover(item, std::move(escape));
}

void ScreenHost::decorate(QQuickItem& item) {
  implementation_->decorate(item);
}

void ScreenHost::share(QQmlContext& context) {
  implementation_->share(context);
}

void ScreenHost::setListedItems(ListedItems items) {
  implementation_->setListedItems(std::move(items));
}

void ScreenHost::needsFrame() {
  implementation_->needsFrame();
}

double ScreenHost::width() const {
  return implementation_->window().width();
}

double ScreenHost::height() const {
  return implementation_->window().height();
}

bool ScreenHost::isResizable() const {
  return StageWindow::hasManager();
}

bool ScreenHost::reducesMotion() const {
  return implementation_->motion().isReduced();
}

}  // namespace qtquick
