#include "tests/support/Clips.h"

#include "platform/foundation/Values.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace clips {

namespace fs = std::filesystem;

namespace {

/// `part`: of the clip folder.
fs::path folder(const std::string& part = {}) {
  const fs::path path = fs::path(QUILLOP_CLIP_FOLDER) / part;
  fs::create_directories(path);
  return path;
}

/// Beside the final place and with the same ending, so that it can be moved there in one step.
fs::path unfinished(const fs::path& path) {
  return path.parent_path() / (".unfinished-" + std::to_string(getpid()) + "-" + path.filename().string());
}

void run(std::vector<std::string> command) {
  std::vector<char*> arguments;
  for (auto& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    std::fprintf(stderr, "could not run %s\n", command[0].c_str());
    std::abort();
  }
}

}  // namespace

std::string clip(const std::string& name, const std::vector<std::string>& arguments) {
  // Other arguments make another file, although its name is the same.
  std::string words;
  for (const auto& argument : arguments) words += argument + '\n';
  const fs::path path = folder(std::to_string(std::hash<std::string>{}(words))) / name;
  if (fs::exists(path)) return path.string();
  const fs::path part = unfinished(path);
  std::vector<std::string> command = {"ffmpeg", "-nostdin", "-v", "error", "-y"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  command.push_back(part.string());
  run(std::move(command));
  fs::rename(part, path);
  return path.string();
}

std::string film(const std::string& name, int width, int height, double seconds, int toneHertz, int channels) {
  const std::string length = std::to_string(seconds);
  const std::string size = std::to_string(width) + "x" + std::to_string(height);
  return clip(name,
              {"-f",        "lavfi",
               "-i",        "testsrc2=size=" + size + ":rate=30:duration=" + length,
               "-f",        "lavfi",
               "-i",        "sine=frequency=" + std::to_string(toneHertz) + ":sample_rate=48000:duration=" + length,
               "-c:v",      "libx264",
               "-preset",   "ultrafast",
               "-pix_fmt",  "yuv420p",
               "-g",        "30",
               "-c:a",      "aac",
               "-b:a",      "128k",
               "-ac",       std::to_string(channels),
               "-movflags", "+faststart"});
}

std::string truncated(const std::string& path, const std::string& name, long bytes) {
  const fs::path copy = folder() / name;
  const fs::path part = unfinished(copy);
  fs::copy_file(path, part, fs::copy_options::overwrite_existing);
  fs::resize_file(part, static_cast<std::uintmax_t>(bytes));
  fs::rename(part, copy);
  return copy.string();
}

std::string edited(const std::string& path, const std::string& name, const std::function<void(std::string&)>& edit) {
  const fs::path copy = folder() / name;
  const fs::path part = unfinished(copy);
  std::ifstream original(path, std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(original), {});
  edit(bytes);
  std::ofstream(part, std::ios::binary) << bytes;
  fs::rename(part, copy);
  return copy.string();
}

std::string urlOf(const std::string& path) {
  return NSURL::fileURLWithPath(path)->absoluteString();
}

}  // namespace clips
