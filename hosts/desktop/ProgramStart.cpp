#include "hosts/desktop/ProgramStart.h"

#include <glib.h>

#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace desktop {

namespace {

/// Those that are of this process alone: among them the tokens by which its own start was announced, which are used
/// up.
std::vector<std::string>& ownVariables() {
  static std::vector<std::string> names{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};
  return names;
}

struct WordsRelease {
  void operator()(gchar** words) const { g_strfreev(words); }
};
using Environment = std::unique_ptr<gchar*, WordsRelease>;

Environment environmentOfTheUser() {
  gchar** environment = g_get_environ();
  for (const auto& name : ownVariables()) environment = g_environ_unsetenv(environment, name.c_str());
  return Environment(environment);
}

void leaveTheSession(gpointer /*nothing*/) {
  setsid();
}

}  // namespace

void setForThisProcess(const std::string& variable, const std::string& value) {
  if (std::getenv(variable.c_str()) != nullptr) return;
  setenv(variable.c_str(), value.c_str(), 1);
  ownVariables().push_back(variable);
}

bool startProgram(const std::vector<std::string>& command) {
  if (command.empty()) return false;
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const Environment environment = environmentOfTheUser();
  return g_spawn_async(nullptr, arguments.data(), environment.get(), G_SPAWN_SEARCH_PATH, leaveTheSession, nullptr,
                       nullptr, nullptr);
}

}  // namespace desktop
