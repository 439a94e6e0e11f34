// Puts the hosts together and runs the app.

#include "platform/uikit/UIApplication.h"

#include "hosts/desktop/AccessPrompt.h"
#include "hosts/desktop/BackgroundReasons.h"
#include "hosts/desktop/BundledResources.h"
#include "hosts/desktop/DefaultsFile.h"
#include "hosts/desktop/DesktopBus.h"
#include "hosts/desktop/DesktopServices.h"
#include "hosts/desktop/EventLoop.h"
#include "hosts/desktop/Films.h"
#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/IndexingBar.h"
#include "hosts/desktop/Layers.h"
#include "hosts/desktop/LibraryAccess.h"
#include "hosts/desktop/LibraryPolicy.h"
#include "hosts/desktop/LibraryWait.h"
#include "hosts/desktop/MailPortal.h"
#include "hosts/desktop/MailPrograms.h"
#include "hosts/desktop/MainWindow.h"
#include "hosts/desktop/MediaKeys.h"
#include "hosts/desktop/MediaPlayers.h"
#include "hosts/desktop/MemoryReturn.h"
#include "hosts/desktop/Notice.h"
#include "hosts/desktop/Paths.h"
#include "hosts/desktop/ProgramStart.h"
#include "hosts/desktop/SettingsPage.h"
#include "hosts/desktop/SingleInstance.h"
#include "hosts/desktop/SoundOutput.h"
#include "hosts/desktop/SoundOutputWatch.h"
#include "hosts/desktop/StandardOutput.h"
#include "hosts/desktop/TerminationSignals.h"
#include "hosts/desktop/UserPresence.h"
#include "hosts/desktop/WindowMenu.h"
#include "hosts/gstreamer/Engine.h"
#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/ArtworkMaker.h"
#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Library.h"
#include "hosts/probe/LoadedLook.h"
#include "hosts/qtquick/ScreenHost.h"
#include "platform/Platform.h"
#include "platform/uikit/UIWindow.h"

#include <QFile>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QQuickWindow>
#include <QShortcut>
#include <QThreadPool>

#include <memory>

namespace {

QImage imageOf(const std::optional<probe::Still>& still) {
  if (!still) return {};
  const QImage view(still->bgrx.data(), still->width, still->height, still->width * 4, QImage::Format_RGB32);
  return view.copy();
}

/// For media panels, which show it larger than a row of the list.
QString artworkFileOf(const std::string& url) {
  constexpr int side = 256;
  const auto file = medialibrary::keptArtworkFile(NSURL(url).path(), side);
  return file ? QString::fromStdString(NSURL::fileURLWithPath(*file)->absoluteString()) : QString();
}

void configureQt() {
  // EGL rather than GLX under X11: frames of hardware decoders cannot be imported otherwise.
  desktop::setForThisProcess("QT_XCB_GL_INTEGRATION", "xcb_egl");
  QGuiApplication::setApplicationName(QStringLiteral("quillop"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Quillop"));
  QGuiApplication::setApplicationVersion(QStringLiteral(QUILLOP_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral(QUILLOP_APPLICATION_ID));
}

std::unique_ptr<host::Mail> userMail(host::MainLoop& mainLoop) {
  if (desktop::isSandboxed())
    return std::make_unique<desktop::MailPortal>(mainLoop, desktop::DesktopBus::usualAddresses().session);
  const QString drafts = desktop::runtimeFolder() + QStringLiteral("/drafts");
  return std::make_unique<desktop::MailPrograms>(mainLoop, drafts.toStdString());
}

/// What fonts there are is looked up by whoever draws the first text. Here it begins before the first screen is made,
/// on another thread.
void lookForFonts() {
  QThreadPool::globalInstance()->start([] { QFontMetricsF(QFont()).horizontalAdvance(QLatin1Char('Q')); });
}

void inTurn(const std::function<void()>& block) {
  const RunLoop::Turn turn(RunLoop::main());
  block();
}

/// Not `quit`, which would ask the window first.
void end() {
  QCoreApplication::exit();
}

/// Everything around the app, in the order in which one thing needs the other.
class Surroundings final {
 public:
  Surroundings() {
    screen_.setListedItems([this] { return library_.listed(); });
    QObject::connect(&wait_, &desktop::LibraryWait::waitingChanged, &indexingBar_,
                     [this] { indexingBar_.setHeldBack(wait_.isWaiting()); });
    if (desktop::isSandboxed()) settings_.setFolderQuestion([this] { bus_.askForFolder(); });
    QObject::connect(&bus_, &desktop::DesktopBus::folderChosen, &access_, &desktop::LibraryAccess::addFolder);
    QObject::connect(&bus_, &desktop::DesktopBus::launched, &window(), [this](const auto& request) {
      mainWindow_.comeForward(request.activationToken);
      if (request.wish == desktop::LaunchRequest::Wish::OpenSettings) settings_.open();
    });
    menu_.offer();
  }

  /// Runs the app until it is to end. Returns the exit status of the program.
  int run(const std::string& delegateClassName);
  void comeForward() const { mainWindow_.comeForward(); }

 private:
  class RunningApp;

  QQuickWindow& window() const { return mainWindow_.window(); }
  std::unique_ptr<host::MediaEngine> makeEngine();
  std::unique_ptr<medialibrary::FolderLibrary> makeLibrary(std::vector<std::string> folders);
  qtquick::WindowEvents windowEvents();
  void tellApp(void (UIApplication::*what)()) const;
  void pauseFilms() const;

  desktop::EventLoop eventLoop_;
  desktop::StandardOutput console_;
  desktop::DefaultsFile defaults_{desktop::configurationFolder() + QStringLiteral("/defaults.json")};
  desktop::BundledResources resources_;
  desktop::DesktopServices services_{[this] { settings_.open(); }};
  std::unique_ptr<host::Mail> mail_ = userMail(eventLoop_);
  RunningApp* app_ = nullptr;
  std::unique_ptr<host::MediaEngine> engine_ = makeEngine();
  desktop::BackgroundReasons background_{[this] { tellApp(&UIApplication::enterBackground); },
                                         [this] { tellApp(&UIApplication::enterForeground); }};
  desktop::DesktopBus bus_{desktop::DesktopBus::usualAddresses(),
                           [this](auto reason, bool holds) { background_.set(reason, holds); }};
  desktop::UserPresence presence_{[this] {
    background_.set(desktop::BackgroundReason::SessionLocked, false);
    background_.set(desktop::BackgroundReason::ScreenSaver, false);
  }};
  medialibrary::ArtworkMaker artwork_{medialibrary::indexerProgram()};
  qtquick::ScreenHost screen_{
      [this](const auto& path, int largestSide) { return imageOf(artwork_.picture(path, largestSide)); },
      windowEvents()};
  desktop::MainWindow mainWindow_{screen_, desktop::stateFolder() + QStringLiteral("/window.ini")};
  desktop::LibraryAccess access_{desktop::configurationFolder() + QStringLiteral("/library.json"),
                                 desktop::systemConfigurationFolders(),
                                 QFile::decodeName(medialibrary::videosFolder().c_str())};
  desktop::Layers layers_{screen_};
  desktop::AccessPrompt prompt_{layers_, access_};
  desktop::LibraryWait wait_{layers_};
  desktop::GuardedLibrary library_{eventLoop_, access_, [this](auto answered) { prompt_.ask(std::move(answered)); },
                                   [this](auto& itself, auto answered) { wait_.begin(itself, std::move(answered)); },
                                   [this](auto folders) { return makeLibrary(std::move(folders)); }};
  desktop::IndexingBar indexingBar_{layers_, library_};
  desktop::SettingsPage settings_{layers_, access_, library_};
  desktop::Notice monoNotice_{layers_, QStringLiteral("The sound output is mono: both films are heard in both ears")};
  desktop::WindowMenu menu_{layers_, [this] { return mainWindow_.menuEntries([this] { settings_.open(); }, end); }};
  /// The keys by which people open the settings of any app, whatever the app shows.
  QShortcut settingsKeys_{QKeySequence(Qt::CTRL | Qt::Key_Comma), &window(), [this] { settings_.open(); }};
  desktop::TerminationSignals termination_{end};
};

/// The app between its launch and its end, and what works its films from elsewhere than its screen.
class Surroundings::RunningApp final {
 public:
  RunningApp(Surroundings& around, const std::string& delegateClassName)
      : around_(around), shared_(launched(around, delegateClassName)) {
    QObject::connect(&films_, &desktop::Films::playingChanged, &around.library_, &desktop::GuardedLibrary::setGentle);
    around.app_ = this;
  }
  ~RunningApp() {
    around_.app_ = nullptr;
    inTurn([this] { shared_->terminate(); });
    around_.mainWindow_.remember();
    around_.screen_.attach(nullptr);
  }
  RunningApp(const RunningApp&) = delete;
  RunningApp& operator=(const RunningApp&) = delete;

  UIApplication& shared() const { return *shared_; }
  desktop::Films& films() { return films_; }

 private:
  static Strong<UIApplication> launched(Surroundings& around, const std::string& delegateClassName) {
    const auto& shared = UIApplication::sharedApplication();
    shared->launch(delegateClassName);
    around.screen_.attach(shared->keyWindow());
    return shared;
  }

  desktop::MediaPlayers::Setting mediaPlayersSetting() {
    return {.bus = desktop::DesktopBus::usualAddresses().session,
            .raise = [this] { around_.comeForward(); },
            .quit = end,
            .title = [this](const auto& url) { return titleOf(url); },
            .artwork = artworkFileOf};
  }

  QString titleOf(const std::string& url) const {
    return QString::fromStdString(around_.library_.title(NSURL(url).path()));
  }

  void hearThrough(const std::optional<desktop::SoundOutput>& output, desktop::Passing passing) {
    const auto consequences = soundOutput_.next(output, passing);
    if (consequences.pausesFilms) films_.pause();
    if (consequences.tellsThatItIsMono) around_.monoNotice_.show();
  }

  Surroundings& around_;
  Strong<UIApplication> shared_;
  desktop::Films films_{shared_->keyWindow()->rootViewController()->films()};
  desktop::MediaPlayers mediaPlayers_{films_, mediaPlayersSetting()};
  desktop::MediaKeys mediaKeys_{around_.window(), films_};
  desktop::SoundOutputRule soundOutput_;
  desktop::SoundOutputWatch soundOutputWatch_{[this](auto output, auto passing) {
    around_.eventLoop_.post([around = &around_, output, passing] {
      if (around->app_ != nullptr) around->app_->hearThrough(output, passing);
    });
  }};
};

int Surroundings::run(const std::string& delegateClassName) {
  Platform platform(
      {eventLoop_, console_, defaults_, resources_, services_, *mail_, bus_, screen_, *engine_, library_});
  RunningApp app(*this, delegateClassName);
  return QCoreApplication::exec();
}

void Surroundings::tellApp(void (UIApplication::*what)()) const {
  if (app_ != nullptr) inTurn([&] { (app_->shared().*what)(); });
}

void Surroundings::pauseFilms() const {
  if (app_ != nullptr) app_->films().pause();
}

std::unique_ptr<host::MediaEngine> Surroundings::makeEngine() {
  gstreamer::Options options;
  options.look = probe::loadedLook;
  options.soundTaken = [this] { eventLoop_.post([this] { pauseFilms(); }); };
  return gstreamer::makeEngine(eventLoop_, std::move(options));
}

std::unique_ptr<medialibrary::FolderLibrary> Surroundings::makeLibrary(std::vector<std::string> folders) {
  medialibrary::LibraryOptions options;
  options.folders = std::move(folders);
  options.spare = (desktop::runtimeFolder() + QStringLiteral("/library.db")).toStdString();
  return medialibrary::makeLibrary(eventLoop_, std::move(options));
}

qtquick::WindowEvents Surroundings::windowEvents() {
  return {.closed = end,
          .hidden = [this] { background_.set(desktop::BackgroundReason::WindowHidden, true); },
          .shown = [this] { background_.set(desktop::BackgroundReason::WindowHidden, false); },
          .menuRequested = [this] { menu_.open(); }};
}

}  // namespace

int UIApplicationMain(int argumentCount, char* arguments[], const char* /*principalClassName*/,
                      const std::string& delegateClassName) {
  desktop::returnFreedMemory();
  configureQt();
  const QGuiApplication application(argumentCount, arguments);
  Surroundings* surroundings = nullptr;
  const desktop::SingleInstance instance(desktop::runtimeFolder(), [&] {
    if (surroundings != nullptr) surroundings->comeForward();
  });
  if (!instance.isFirst()) return 0;
  lookForFonts();
  qtquick::chooseGraphics();
  Surroundings around;
  surroundings = &around;
  const int status = around.run(delegateClassName);
  surroundings = nullptr;
  return status;
}
