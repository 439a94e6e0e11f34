#include "hosts/desktop/Browser.h"

#include "hosts/desktop/DesktopEntry.h"
#include "hosts/desktop/ProgramStart.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <memory>

namespace desktop {

namespace {

struct ObjectRelease {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using Program = std::unique_ptr<GAppInfo, ObjectRelease>;

bool runsInTerminal(GAppInfo* program) {
  return G_IS_DESKTOP_APP_INFO(program) &&
         g_desktop_app_info_get_boolean(G_DESKTOP_APP_INFO(program), G_KEY_FILE_DESKTOP_KEY_TERMINAL);
}

bool opened(GAppInfo* program, const std::string& file) {
  if (program == nullptr || runsInTerminal(program)) return false;
  const char* const execLine = g_app_info_get_commandline(program);
  return execLine != nullptr && startProgram(commandToOpen(execLine, file));
}

}  // namespace

bool openInBrowser(const std::string& file) {
  // What opens HTML files may well be an editor: web addresses come first.
  const Program forAddresses(g_app_info_get_default_for_uri_scheme("https"));
  if (opened(forAddresses.get(), file)) return true;
  const Program forPages(g_app_info_get_default_for_type("text/html", false));
  return opened(forPages.get(), file);
}

}  // namespace desktop
