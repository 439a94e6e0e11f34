#pragma once

#include "hosts/desktop/AccessPrompt.h"
#include "hosts/desktop/IndexingBar.h"
#include "hosts/desktop/LibraryWait.h"
#include "hosts/desktop/Notice.h"
#include "hosts/desktop/SettingsPage.h"
#include "hosts/desktop/WindowMenu.h"
#include "tests/host/desktop/LibraryStage.h"
#include "tests/support/EnvironmentVariable.h"

/// The app with all that the desktop lays over it, to be photographed in one state.
class Scene final {
 public:
  struct Options {
    QSize size;
    std::vector<std::string> titles;
    bool isFirstRun = false;
    const char* textScale = "1";
    const char* highContrast = "0";
  };
  explicit Scene(Options options);
  explicit Scene(QSize size) : Scene(Options{size, {}}) {}

  ScreenStage& stage() { return there_.stage; }
  desktop::LibraryFacts& facts() { return there_.facts; }
  desktop::LibraryAccess& access() { return there_.access; }
  desktop::AccessPrompt& prompt() { return prompt_; }
  desktop::Notice& notice() { return notice_; }

  void playBoth();
  void tab(int times);
  void hover(const QString& name);
  void press(const QString& name) { there_.click(name); }
  void openSettings();
  void openMenu();
  /// The library works on `done` of `total` files.
  void index(std::size_t done, std::size_t total);
  /// Shows how far the library is to somebody who waits for it.
  void waitForLibrary();

  /// Once all that is on its way is there.
  QImage picture();

 private:
  bool isLoading();

  const EnvironmentVariable textScale_;
  const EnvironmentVariable highContrast_;
  desktop::LibraryStage there_;
  const EnvironmentVariable home_{"HOME", there_.folder.path().toStdString()};
  desktop::AccessPrompt prompt_{there_.layers, there_.access};
  desktop::LibraryWait wait_{there_.layers};
  desktop::IndexingBar bar_{there_.layers, there_.library};
  desktop::SettingsPage settings_{there_.layers, there_.access, there_.library};
  desktop::WindowMenu menu_{
      there_.layers, [] {
        return std::vector<desktop::WindowMenu::Entry>{{"Settings", {}}, {"Full screen", {}}, {"Quit", {}}};
      }};
  desktop::Notice notice_{there_.layers, "The sound output is mono: both films are heard in both ears"};
};
