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
#include "hosts/desktop/WindowPlace.h"
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
#include <QIcon>
#include <QImage>
#include <QQuickWindow>
#include <QShortcut>
#include <QThreadPool>

#include <cstdio>
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

/// Drawn in many sizes, and not needed for the first screen.
void setIconAfterFirstFrame(const QQuickWindow& window) {
  QObject::connect(
      &window, &QQuickWindow::frameSwapped, qGuiApp,
      [] { QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/images/quillop.svg"))); },
      static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
}

void inTurn(const std::function<void()>& block) {
  const RunLoop::Turn turn(RunLoop::main());
  block();
}

/// Not `quit`, which would ask the window first.
void end() {
  QCoreApplication::exit();
}

/// Without the token of whoever asked for it, a Wayland compositor lets no window come forward.
void comeForward(QQuickWindow& window, const QString& activationToken = {}) {
  if (!activationToken.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
  if (window.visibility() == QWindow::Minimized) window.showNormal();
  window.raise();
  window.requestActivate();
}

std::vector<desktop::WindowMenu::Entry> windowEntries(qtquick::ScreenHost& screen, desktop::SettingsPage& settings) {
  auto& window = screen.window();
  const bool isFull = window.windowStates() & Qt::WindowFullScreen;
  std::vector<desktop::WindowMenu::Entry> entries{{QStringLiteral("Settings"), [&] { settings.open(); }}};
  if (screen.isResizable()) {
    const auto title = isFull ? QStringLiteral("Leave full screen") : QStringLiteral("Full screen");
    entries.push_back({title, [&] { window.setWindowStates(window.windowStates() ^ Qt::WindowFullScreen); }});
  }
  entries.push_back({QStringLiteral("Quit"), end});
  return entries;
}

void restore(QQuickWindow& window, const desktop::WindowPlace& place) {
  const auto remembered = place.remembered();
  if (!remembered) return;
  window.setGeometry(remembered->geometry);
  if (remembered->fullScreen) window.setWindowState(Qt::WindowFullScreen);
}

}  // namespace

int UIApplicationMain(int argumentCount, char* arguments[], const char* /*principalClassName*/,
                      const std::string& delegateClassName) {
  desktop::returnFreedMemory();
  configureQt();
  QGuiApplication application(argumentCount, arguments);
  QQuickWindow* mainWindow = nullptr;
  const desktop::SingleInstance instance(desktop::runtimeFolder(), [&] {
    if (mainWindow != nullptr) comeForward(*mainWindow);
  });
  if (!instance.isFirst()) return 0;
  lookForFonts();
  qtquick::chooseGraphics();

  desktop::EventLoop eventLoop;
  desktop::StandardOutput console;
  desktop::DefaultsFile defaults(desktop::configurationFolder() + QStringLiteral("/defaults.json"));
  desktop::BundledResources resources;
  desktop::SettingsPage* settingsPage = nullptr;
  desktop::WindowMenu* windowMenu = nullptr;
  desktop::DesktopServices services([&] { settingsPage->open(); });
  const auto mail = userMail(eventLoop);
  UIApplication* running = nullptr;  // between its launch and its end
  desktop::Films* runningFilms = nullptr;
  const auto pauseFilms = [&] {
    if (runningFilms != nullptr) runningFilms->pause();
  };
  gstreamer::Options engineOptions;
  engineOptions.look = probe::loadedLook;
  engineOptions.soundTaken = [&] { eventLoop.post(pauseFilms); };
  const auto engine = gstreamer::makeEngine(eventLoop, std::move(engineOptions));
  desktop::BackgroundReasons background(
      [&] {
        if (running != nullptr) inTurn([&] { running->enterBackground(); });
      },
      [&] {
        if (running != nullptr) inTurn([&] { running->enterForeground(); });
      });
  desktop::DesktopBus bus(desktop::DesktopBus::usualAddresses(),
                          [&](auto reason, bool holds) { background.set(reason, holds); });
  const desktop::UserPresence presence([&] {
    background.set(desktop::BackgroundReason::SessionLocked, false);
    background.set(desktop::BackgroundReason::ScreenSaver, false);
  });
  medialibrary::ArtworkMaker artwork(medialibrary::indexerProgram());
  qtquick::ScreenHost screen(
      [&](const auto& path, int largestSide) { return imageOf(artwork.picture(path, largestSide)); },
      {.closed = end,
       .hidden = [&] { background.set(desktop::BackgroundReason::WindowHidden, true); },
       .shown = [&] { background.set(desktop::BackgroundReason::WindowHidden, false); },
       .menuRequested = [&] { windowMenu->open(); }});
  mainWindow = &screen.window();
  const desktop::WindowPlace place(desktop::stateFolder() + QStringLiteral("/window.ini"));
  restore(*mainWindow, place);
  setIconAfterFirstFrame(*mainWindow);
  screen.show();

  desktop::LibraryAccess access(desktop::configurationFolder() + QStringLiteral("/library.json"),
                                desktop::systemConfigurationFolders(),
                                QFile::decodeName(medialibrary::videosFolder().c_str()));
  desktop::Layers layers(screen);
  desktop::AccessPrompt prompt(layers);
  desktop::LibraryWait wait(layers);
  desktop::GuardedLibrary library(
      eventLoop, access, [&](auto answered) { prompt.ask(std::move(answered)); },
      [&](auto& itself, auto answered) { wait.begin(itself, std::move(answered)); },
      [&](auto folders) {
        medialibrary::LibraryOptions options;
        options.folders = std::move(folders);
        options.spare = (desktop::runtimeFolder() + QStringLiteral("/library.db")).toStdString();
        return medialibrary::makeLibrary(eventLoop, std::move(options));
      });
  screen.setListedItems([&] { return library.listed(); });
  desktop::IndexingBar indexingBar(layers, library);
  QObject::connect(&wait, &desktop::LibraryWait::waitingChanged, &indexingBar,
                   [&] { indexingBar.setHeldBack(wait.isWaiting()); });
  desktop::SettingsPage settings(layers, access, library);
  if (desktop::isSandboxed()) settings.setFolderQuestion([&] { bus.askForFolder(); });
  QObject::connect(&bus, &desktop::DesktopBus::folderChosen, &access, &desktop::LibraryAccess::addFolder);
  desktop::Notice monoNotice(layers, QStringLiteral("The sound output is mono: both films are heard in both ears"));
  settingsPage = &settings;
  desktop::WindowMenu menu(layers, [&] { return windowEntries(screen, settings); });
  menu.offer();
  windowMenu = &menu;
  // The keys by which people open the settings of any app, whatever the app shows.
  const QShortcut settingsKeys(QKeySequence(Qt::CTRL | Qt::Key_Comma), mainWindow, [&] { settings.open(); });

  QObject::connect(&bus, &desktop::DesktopBus::launched, mainWindow, [&](const auto& request) {
    comeForward(*mainWindow, request.activationToken);
    if (request.wish == desktop::LaunchRequest::Wish::OpenSettings) settings.open();
  });

  const desktop::TerminationSignals termination(end);
  int status = 0;
  {
    Platform platform({eventLoop, console, defaults, resources, services, *mail, bus, screen, *engine, library});
    const auto& shared = UIApplication::sharedApplication();
    shared->launch(delegateClassName);
    screen.attach(shared->keyWindow());
    desktop::Films films(shared->keyWindow()->rootViewController()->films());
    QObject::connect(&films, &desktop::Films::playingChanged, &library, &desktop::GuardedLibrary::setGentle);
    const desktop::MediaPlayers mediaPlayers(
        films, {.bus = desktop::DesktopBus::usualAddresses().session,
                .raise = [&] { comeForward(*mainWindow); },
                .quit = end,
                .title = [&](const auto& url) { return QString::fromStdString(library.title(NSURL(url).path())); },
                .artwork = artworkFileOf});
    const desktop::MediaKeys mediaKeys(*mainWindow, films);
    running = shared.get();
    runningFilms = &films;
    desktop::SoundOutputRule soundOutput;
    const desktop::SoundOutputWatch soundOutputWatch([&](auto output, auto passing) {
      eventLoop.post([&, output, passing] {
        if (running == nullptr) return;
        const auto consequences = soundOutput.next(output, passing);
        if (consequences.pausesFilms) pauseFilms();
        if (consequences.tellsThatItIsMono) monoNotice.show();
      });
    });
    status = QCoreApplication::exec();
    runningFilms = nullptr;
    running = nullptr;
    inTurn([&] { shared->terminate(); });
    place.remember({mainWindow->geometry(), mainWindow->visibility() == QWindow::FullScreen});
    screen.attach(nullptr);
  }
  mainWindow = nullptr;
  return status;
}
