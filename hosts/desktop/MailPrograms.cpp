#include "hosts/desktop/MailPrograms.h"

#include "hosts/desktop/DesktopEntry.h"
#include "hosts/desktop/MailMessage.h"
#include "hosts/desktop/ProgramStart.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace desktop {

namespace {

constexpr const char* messageType = "message/rfc822";
constexpr const char* addressType = "x-scheme-handler/mailto";

struct ObjectRelease {
  void operator()(gpointer object) const { g_object_unref(object); }
};
using Program = std::unique_ptr<GAppInfo, ObjectRelease>;

/// How the chosen program wants its draft.
enum class Way { ComposeOption, File };

struct Choice {
  Way way = Way::File;
  std::string execLine;
};

bool takesType(GAppInfo* program, const char* type) {
  const char* const* types = g_app_info_get_supported_types(program);
  return types != nullptr && g_strv_contains(types, type);
}

bool runsInTerminal(GAppInfo* program) {
  return G_IS_DESKTOP_APP_INFO(program) &&
         g_desktop_app_info_get_boolean(G_DESKTOP_APP_INFO(program), G_KEY_FILE_DESKTOP_KEY_TERMINAL);
}

std::string lowerCase(const char* text) {
  std::string lower = text == nullptr ? "" : text;
  for (char& character : lower) character = g_ascii_tolower(character);
  return lower;
}

/// By the name of the desktop entry or of the binary; both carry it, whoever packaged the program.
bool hasComposeOption(GAppInfo* program) {
  constexpr std::array<std::string_view, 4> relatives{"thunderbird", "betterbird", "icedove", "seamonkey"};
  const std::string entry = lowerCase(g_app_info_get_id(program));
  const std::string binary = std::filesystem::path(lowerCase(g_app_info_get_executable(program))).filename();
  for (const auto name : relatives) {
    if (entry.find(name) != std::string::npos || binary.find(name) != std::string::npos) return true;
  }
  return false;
}

std::optional<Choice> choiceOf(GAppInfo* program) {
  if (program == nullptr || runsInTerminal(program)) return std::nullopt;
  const char* execLine = g_app_info_get_commandline(program);
  if (execLine == nullptr) return std::nullopt;
  if (hasComposeOption(program)) return Choice{Way::ComposeOption, execLine};
  if (takesType(program, messageType)) return Choice{Way::File, execLine};
  return std::nullopt;
}

/// Asked afresh each time: the user may have installed or chosen another program since. The library behind it keeps
/// what it read until a file of it changes.
std::optional<Choice> chosenProgram() {
  const Program forAddresses(g_app_info_get_default_for_uri_scheme("mailto"));
  if (!forAddresses) return std::nullopt;
  if (auto choice = choiceOf(forAddresses.get())) return choice;
  const Program forMessages(g_app_info_get_default_for_type(messageType, false));
  const bool isMailProgram = forMessages && takesType(forMessages.get(), addressType);
  return isMailProgram ? choiceOf(forMessages.get()) : std::nullopt;
}

bool writeWhole(int file, const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(file, text.data() + written, text.size() - written);
    if (count <= 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

/// A new file of this user's alone; its path, or none.
std::optional<std::string> written(const std::string& folder, const std::string& message) {
  constexpr std::string_view ending = ".eml";
  std::string path = folder + "/draft-XXXXXX" + std::string(ending);
  const int file = mkstemps(path.data(), static_cast<int>(ending.size()));
  if (file < 0) return std::nullopt;
  const bool whole = writeWhole(file, message);
  if (close(file) != 0 || !whole) {
    unlink(path.c_str());
    return std::nullopt;
  }
  return path;
}

bool openFile(const std::string& execLine, const std::string& folder, const std::string& message) {
  const auto path = written(folder, message);
  if (!path) return false;
  const bool started = startProgram(commandToOpen(execLine, *path));
  if (!started) unlink(path->c_str());
  return started;
}

bool compose(const std::string& execLine, const std::string& argument) {
  auto command = commandToStart(execLine);
  if (command.empty()) return false;
  // The entry for addresses may hold the option already.
  if (command.back() != "-compose" && command.back() != "--compose") command.emplace_back("-compose");
  command.push_back(argument);
  return startProgram(command);
}

/// Everything that needs the main thread is in what this gives back; the rest is done by calling it.
std::function<bool()> handOver(const Choice& choice, const std::string& folder, const host::MailDraft& draft) {
  if (choice.way == Way::ComposeOption) {
    return [line = choice.execLine, argument = composeArgument(draft)] { return compose(line, argument); };
  }
  return [line = choice.execLine, folder, message = mailMessage(draft)] { return openFile(line, folder, message); };
}

void removeOldDrafts(const std::string& folder) {
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}

}  // namespace

MailPrograms::MailPrograms(host::MainLoop& mainLoop, std::string draftFolder)
    : mainLoop_(mainLoop), draftFolder_(std::move(draftFolder)) {
  removeOldDrafts(draftFolder_);
}

MailPrograms::~MailPrograms() {
  if (start_.joinable()) start_.join();
}

bool MailPrograms::canCompose() const {
  return chosenProgram().has_value();
}

void MailPrograms::compose(const host::MailDraft& draft, std::function<void(bool)> done) {
  const auto choice = chosenProgram();
  if (!choice) {
    mainLoop_.post([done = std::move(done)] { done(false); });
    return;
  }
  mkdir(draftFolder_.c_str(), S_IRWXU);  // where that fails, so does writing into it
  if (start_.joinable()) start_.join();  // long done: the app waits for `done` before it writes another mail
  start_ = std::thread([this, work = handOver(*choice, draftFolder_, draft), tell = std::move(done)]() mutable {
    const bool handedOver = work();
    mainLoop_.post([tell = std::move(tell), handedOver] { tell(handedOver); });
  });
}

}  // namespace desktop
