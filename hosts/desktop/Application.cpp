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
#include "hosts/desktop/Layers.h"
#include "hosts/desktop/LibraryAccess.h"
#include "hosts/desktop/LibraryPolicy.h"
#include "hosts/desktop/MailPrograms.h"
#include "hosts/desktop/Paths.h"
#include "hosts/desktop/SettingsPage.h"
#include "hosts/desktop/SingleInstance.h"
#include "hosts/desktop/StandardOutput.h"
#include "hosts/desktop/TerminationSignals.h"
#include "hosts/desktop/UserPresence.h"
#include "hosts/desktop/WindowPlace.h"
#include "hosts/gstreamer/Engine.h"
#include "hosts/medialibrary/Artwork.h"
#include "hosts/medialibrary/Folders.h"
#include "hosts/medialibrary/Library.h"
#include "hosts/qtquick/ScreenHost.h"
#include "platform/Platform.h"
#include "platform/mediaplayer/MPMediaQuery.h"
#include "platform/uikit/UIWindow.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QQuickWindow>

namespace {

QImage artworkImage(const std::string& path, int largestSide) {
  const auto still = medialibrary::artwork(path, largestSide);
  if (!still) return {};
  const QImage view(still->bgrx.data(), still->width, still->height, still->width * 4, QImage::Format_RGB32);
  return view.copy();
}

void configureQt() {
  // EGL rather than GLX under X11: frames of hardware decoders cannot be imported otherwise.
  if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION")) qputenv("QT_XCB_GL_INTEGRATION", "xcb_egl");
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
  const auto engine = gstreamer::makeEngine(eventLoop);
  UIApplication* running = nullptr;  // between its launch and its end
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
  qtquick::ScreenHost screen(artworkImage,
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
  desktop::GuardedLibrary library(
      eventLoop, access, [&](auto answered) { prompt.ask(std::move(answered)); },
      [&](auto folders) {
        return medialibrary::makeLibrary(eventLoop, {std::move(folders), {}});
      });
  desktop::SettingsPage settings(layers, access, [&] { return library.contents(MPMediaTypeHomeVideo); });
  settingsPage = &settings;

  const desktop::TerminationSignals termination(end);
  int status = 0;
  {
    Platform platform({eventLoop, console, defaults, resources, services, mail, bus, screen, *engine, library});
    const auto& shared = UIApplication::sharedApplication();
    shared->launch(delegateClassName);
    screen.attach(shared->keyWindow());
    running = shared.get();
    status = QCoreApplication::exec();
    running = nullptr;
    inTurn([&] { shared->terminate(); });
    place.remember({mainWindow->geometry(), mainWindow->visibility() == QWindow::FullScreen});
    screen.attach(nullptr);
  }
  mainWindow = nullptr;
  return status;
}
