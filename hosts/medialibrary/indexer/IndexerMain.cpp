#include "hosts/medialibrary/indexer/IndexerMain.h"

#include "hosts/medialibrary/Thumbnails.h"
#include "hosts/medialibrary/indexer/Sandbox.h"

#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

namespace medialibrary {

namespace {

template <class Number>
std::optional<Number> numberIn(std::string_view text) {
  Number number{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

struct Orders {
  pid_t starter = 0;
  std::uint64_t mostMemory = 0;
  bool isUrgent = false;
};

std::optional<Orders> ordersIn(std::span<char*> arguments) {
  if (arguments.size() != 4) return std::nullopt;
  const auto starter = numberIn<pid_t>(arguments[1]);
  const auto mostMemory = numberIn<std::uint64_t>(arguments[2]);
  const std::string_view priority = arguments[3];
  if (!starter || !mostMemory || (priority != "urgent" && priority != "background")) return std::nullopt;
  return Orders{*starter, *mostMemory, priority == "urgent"};
}

}  // namespace

int indexerMain(std::span<char*> arguments, const LookInto& look) {
  const auto orders = ordersIn(arguments);
  if (!orders) {
    std::fputs("This program is started by Quillop to look into video files.\n", stderr);
    return 2;
  }
  if (!endWithStarter(orders->starter)) return 0;
  enterSandbox({makeThumbnailFolder(), orders->mostMemory});
  if (!orders->isUrgent) giveWayToOtherProcesses();
  return runIndexerLoop(STDIN_FILENO, STDOUT_FILENO, look);
}

}  // namespace medialibrary
