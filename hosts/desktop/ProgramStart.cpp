#include "hosts/desktop/ProgramStart.h"

#include <glib.h>

#include <unistd.h>

namespace desktop {

namespace {

void leaveTheSession(gpointer /*nothing*/) {
  setsid();
}

}  // namespace

bool startProgram(const std::vector<std::string>& command) {
  if (command.empty()) return false;
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return g_spawn_async(nullptr, arguments.data(), nullptr, G_SPAWN_SEARCH_PATH, leaveTheSession, nullptr, nullptr,
                       nullptr);
}

}  // namespace desktop
