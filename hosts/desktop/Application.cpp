// Puts the hosts together and runs the app.

#include "platform/uikit/UIApplication.h"

#include "hosts/desktop/AccessPrompt.h"
#include "hosts/desktop/BackgroundReasons.h"
#include "hosts/desktop/BundledResources.h"
#include "hosts/desktop/DefaultsFile.h"
#include "hosts/desktop/DesktopBus.h"
#include "hosts/desktop/DesktopServices.h"
#include "hosts/desktop/EventLoop.h"
#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/IndexingBar.h"
#include "hosts/desktop/Layers.h"
#include "hosts/desktop/LibraryAccess.h"
#include "hosts/desktop/LibraryPolicy.h"
#include "hosts/desktop/LibraryWait.h"
#include "hosts/desktop/MailPrograms.h"
#include "hosts/desktop/Notice.h"
#include "hosts/desktop/Paths.h"
#include "hosts/desktop/PlayingDisplay.h"
#include "hosts/desktop/PlayingFilms.h"
#include "hosts/desktop/ProgramStart.h"
#include "hosts/desktop/SettingsPage.h"
#include "hosts/desktop/SingleInstance.h"
#include "hosts/desktop/SoundOutput.h"
#include "hosts/desktop/SoundOutputWatch.h"
#include "hosts/desktop/StandardOutput.h"
#include "hosts/desktop/TerminationSignals.h"
#include "hosts/desktop/UserPresence.h"
#include "hosts/desktop/WindowPlace.h"
#include "hosts/gstreamer/Engine.h"
#include "hosts/medialibrary/ArtworkMaker.h"
#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Library.h"
#include "hosts/qtquick/ScreenHost.h"
#include "platform/Platform.h"
#include "platform/uikit/UIWindow.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QQuickWindow>
#include <QShortcut>

#include <cstdio>

namespace {

QImage imageOf(const std::optional<probe::Still>& still) {
  if (!still) return {};
  const QImage view(still->bgrx.data(), still->width, still->height, still->width * 4, QImage::Format_RGB32);
  return view.copy();
}

void configureQt() {
  // EGL rather than GLX under X11: frames of hardware decoders cannot be imported otherwise.
  desktop::setForThisProcess("QT_XCB_GL_INTEGRATION", "xcb_egl");
  QGuiApplication::setApplicationName(QStringLiteral("quillop"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Quillop"));
  QGuiApplication::setApplicationVersion(QStringLiteral(QUILLOP_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("quillop"));
}

void inTurn(const std::function<void()>& block) {
  const RunLoop::Turn turn(RunLoop::main());
  block();
}

/// Not `quit`, which would ask the window first.
void end() {
  QCoreApplication::exit();
}

void comeForward(QQuickWindow& window) {
  if (window.visibility() == QWindow::Minimized) window.showNormal();
  window.raise();
  window.requestActivate();
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
  configureQt();
  QGuiApplication application(argumentCount, arguments);
  QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/images/quillop.svg")));
  QQuickWindow* mainWindow = nullptr;
  const desktop::SingleInstance instance(desktop::runtimeFolder(), [&] {
    if (mainWindow != nullptr) comeForward(*mainWindow);
  });
  if (!instance.isFirst()) return 0;
  qtquick::chooseGraphics();

  desktop::EventLoop eventLoop;
  desktop::StandardOutput console;
  desktop::DefaultsFile defaults(desktop::configurationFolder() + QStringLiteral("/defaults.json"));
  desktop::BundledResources resources;
  desktop::SettingsPage* settingsPage = nullptr;
  desktop::DesktopServices services([&] { settingsPage->open(); });
  desktop::MailPrograms mail(eventLoop, (desktop::runtimeFolder() + QStringLiteral("/drafts")).toStdString());
  UIApplication* running = nullptr;  // between its launch and its end
  const auto pauseFilms = [&] {
    if (running != nullptr) desktop::pausePlayingFilms();
  };
  gstreamer::Options engineOptions;
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
       .shown = [&] { background.set(desktop::BackgroundReason::WindowHidden, false); }});
  mainWindow = &screen.window();
  const desktop::WindowPlace place(desktop::stateFolder() + QStringLiteral("/window.ini"));
  restore(*mainWindow, place);
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
  desktop::PlayingDisplay display(bus, [&](bool isPlaying) { library.setGentle(isPlaying); });
  desktop::IndexingBar indexingBar(layers, library);
  QObject::connect(&wait, &desktop::LibraryWait::waitingChanged, &indexingBar,
                   [&] { indexingBar.setHeldBack(wait.isWaiting()); });
  desktop::SettingsPage settings(layers, access, library);
  desktop::Notice monoNotice(layers, QStringLiteral("The sound output is mono: both films are heard in both ears"));
  settingsPage = &settings;
  // The keys by which people open the settings of any app, whatever the app shows.
  const QShortcut settingsKeys(QKeySequence(Qt::CTRL | Qt::Key_Comma), mainWindow, [&] { settings.open(); });

  const desktop::TerminationSignals termination(end);
  int status = 0;
  {
    Platform platform({eventLoop, console, defaults, resources, services, mail, display, screen, *engine, library});
    const auto& shared = UIApplication::sharedApplication();
    shared->launch(delegateClassName);
    screen.attach(shared->keyWindow());
    running = shared.get();
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
    running = nullptr;
    inTurn([&] { shared->terminate(); });
    place.remember({mainWindow->geometry(), mainWindow->visibility() == QWindow::FullScreen});
    screen.attach(nullptr);
  }
  mainWindow = nullptr;
  return status;
}
