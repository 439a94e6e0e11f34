#include "hosts/desktop/DesktopEntry.h"

#include <glib.h>

#include <memory>

namespace desktop {

namespace {

struct WordsRelease {
  void operator()(gchar** words) const { g_strfreev(words); }
};
struct TextRelease {
  void operator()(gchar* text) const { g_free(text); }
};

std::vector<std::string> wordsOf(const std::string& execLine) {
  gchar** split = nullptr;
  if (!g_shell_parse_argv(execLine.c_str(), nullptr, &split, nullptr)) return {};
  const std::unique_ptr<gchar*, WordsRelease> owner(split);
  std::vector<std::string> words;
  for (gchar** word = split; *word != nullptr; ++word) words.emplace_back(*word);
  return words;
}

std::string addressOf(const std::string& file) {
  const std::unique_ptr<gchar, TextRelease> address(g_filename_to_uri(file.c_str(), nullptr, nullptr));
  return address ? address.get() : std::string();
}

/// What the field code %`code` stands for.
std::string expansion(char code, const std::string& file) {
  switch (code) {
    case '%':
      return "%";
    case 'f':
    case 'F':
      return file;
    case 'u':
    case 'U':
      return file.empty() ? std::string() : addressOf(file);
    default:
      return {};
  }
}

/// `word` with its field codes replaced; empty when it consisted of codes that stand for nothing.
std::string expanded(const std::string& word, const std::string& file) {
  std::string text;
  for (std::size_t index = 0; index < word.size(); ++index) {
    const bool isCode = word[index] == '%' && index + 1 < word.size();
    text += isCode ? expansion(word[++index], file) : std::string(1, word[index]);
  }
  return text;
}

/// Flatpak lets a sandboxed program see the files between these marks.
bool marksForwardedFiles(const std::string& word) {
  return word == "@@" || word == "@@u" || word == "--file-forwarding";
}

}  // namespace

std::vector<std::string> commandToOpen(const std::string& execLine, const std::string& file) {
  std::vector<std::string> command;
  for (const auto& word : wordsOf(execLine)) {
    auto text = expanded(word, file);
    if (!text.empty() || word.empty()) command.push_back(std::move(text));
  }
  return command;
}

std::vector<std::string> commandToStart(const std::string& execLine) {
  auto command = commandToOpen(execLine, {});
  std::erase_if(command, marksForwardedFiles);
  return command;
}

}  // namespace desktop
