// Keeps a library as the app does, until it is ended: quillop-library-program INDEX INDEXER FOLDER
// Says "settled" on standard output as often as there is nothing left to be looked into.

#include "hosts/medialibrary/Library.h"

#include <unistd.h>

#include <cstdio>

namespace {

class NoMainLoop final : public host::MainLoop {
 public:
  double now() const override { return 0.0; }
  void wakeAt(double) override {}
  void post(std::function<void()>) override {}
};

}  // namespace

int main(int argumentCount, char* arguments[]) {
  if (argumentCount != 4) return 2;
  constexpr std::uint64_t homeVideo = 8192;
  constexpr useconds_t interval = 5000;  // microseconds
  NoMainLoop mainLoop;
  medialibrary::LibraryOptions options;
  options.index = arguments[1];
  options.indexer = arguments[2];
  options.folders = {arguments[3]};
  options.locale = "C";
  const auto library = medialibrary::makeLibrary(mainLoop, options);
  for (;;) {
    const auto contents = library->contents(homeVideo);
    if (!contents.isSearching && contents.unknownFiles == 0 && std::puts("settled") < 0) return 1;
    std::fflush(stdout);
    ::usleep(interval);
  }
}
