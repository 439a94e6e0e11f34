// quillop-engine-soak [COUNT [SEED]]: tortures the engine with as many commands; status 1 when something broke.

#include "tests/host/gstreamer/Torture.h"

#include <cstdio>
#include <cstdlib>
#include <random>

int main(int argc, char* argv[]) {
  const int count = argc > 1 ? std::atoi(argv[1]) : 1000;
  const auto seed =
      static_cast<std::uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 10) : std::random_device()());
  if (count <= 0) {
    std::fprintf(stderr, "usage: quillop-engine-soak [COUNT [SEED]]\n");
    return 2;
  }
  std::printf("seed %u\n", seed);
  std::fflush(stdout);
  const gstreamer::Ordeal ordeal = gstreamer::torture(seed, count);
  std::printf("%d commands: %s\n", ordeal.commands, ordeal.fault.empty() ? "nothing broke" : ordeal.fault.c_str());
  std::fflush(stdout);
  return ordeal.fault.empty() ? 0 : 1;
}
