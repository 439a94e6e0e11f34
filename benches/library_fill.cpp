// Makes a large library without any films in it: quillop-library-fill INDEX FOLDER FILES
//
// Puts FILES empty files into FOLDER, a hundred to each folder in it, and writes an INDEX in which each of them is
// known as a film of a minute. The app lists them, and does not open them as long as they do not change.

#include "benches/FilledLibrary.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int argumentCount, char* arguments[]) try {
  if (argumentCount != 4) return 2;
  const std::filesystem::path folder = arguments[2];
  for (int number = 0; number < std::atoi(arguments[3]); ++number) {
    const auto inside = folder / ("Folder " + std::to_string(number / 100));
    std::filesystem::create_directories(inside);
    std::ofstream(inside / ("A film of the holidays " + std::to_string(number) + ".mp4"));
  }
  const medialibrary::Order order("C");
  benches::filledIndex(arguments[1], folder.string(), order);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
