#include "platform/foundation/Console.h"

#include "platform/Platform.h"

#include <cstdio>
#include <cstdlib>

void print(std::string_view line) {
  Platform::current().ports().console.writeLine(line);
}

void fatalError(std::string_view reason) {
  std::fprintf(stderr, "Fatal error: %.*s\n", static_cast<int>(reason.size()), reason.data());
  std::fflush(stderr);
  std::abort();
}
