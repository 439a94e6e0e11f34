// How fast folders are searched: quillop-scan-bench [FOLDER]
//
// Makes 100,000 files in 1,000 folders, and 100,000 in one, below a new folder in FOLDER (the folder for temporary
// files unless told otherwise), and searches them by turns with `find`, which prints the facts of each file, and with
// the library's own search, alone and as a whole: compared with an index that knows them all. Prints the medians of
// seven turns, from warm caches, and their ratios.

#include "benches/FilledLibrary.h"
#include "benches/Measuring.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using benches::median;
using benches::secondsOf;

constexpr int turns = 7;

struct Shape {
  const char* name;
  int folders;
  int filesInEach;
};

class Files {
 public:
  Files(const std::filesystem::path& where, const Shape& shape) {
    std::string name = (where / "quillop-scan-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder can be made in " + where.string());
    path_ = name;
    for (int folder = 0; folder < shape.folders; ++folder) make(folder, shape.filesInEach);
  }
  ~Files() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;

  const std::string& path() const { return path_; }

 private:
  void make(int number, int files) const {
    const std::filesystem::path folder = std::filesystem::path(path_) / ("folder " + std::to_string(number));
    std::filesystem::create_directory(folder);
    for (int file = 0; file < files; ++file) {
      std::ofstream(folder / ("A film of the holidays " + std::to_string(file) + ".mp4")) << file;
    }
  }

  std::string path_;
};

void find(const std::string& path) {
  benches::runUnseen({"find", path, "-type", "f", "-printf", "%s %T@ %i\\n"});
}

void scan(const std::string& path, std::size_t expected) {
  medialibrary::FolderScan scan({path});
  std::size_t found = 0;
  for (medialibrary::ScannedFolder folder; scan.next(folder);) found += folder.files.size();
  if (found != expected) throw std::runtime_error("found " + std::to_string(found) + " files");
}

void measure(const std::filesystem::path& where, const Shape& shape) {
  const Files files(where, shape);
  const auto count = static_cast<std::size_t>(shape.folders) * static_cast<std::size_t>(shape.filesInEach);
  find(files.path());
  std::vector<double> finds;
  std::vector<double> scans;
  std::vector<double> rescans;
  const Files ofIndex(where, {"", 0, 0});
  const medialibrary::Order order("C");
  const auto index = benches::filledIndex(ofIndex.path() + "/library.db", files.path(), order);
  const auto watch = medialibrary::FolderWatch::make();
  benches::rescan(*index, *watch, files.path());  // the watches are there from now on
  for (int turn = 0; turn < turns; ++turn) {
    finds.push_back(secondsOf([&] { find(files.path()); }));
    scans.push_back(secondsOf([&] { scan(files.path(), count); }));
    rescans.push_back(secondsOf([&] { benches::rescan(*index, *watch, files.path()); }));
  }
  std::printf("%-30s find %.3f s   search %.3f s   ratio %.2f   whole rescan %.3f s   ratio %.2f\n", shape.name,
              median(finds), median(scans), median(scans) / median(finds), median(rescans),
              median(rescans) / median(finds));
}

}  // namespace

int main(int argc, char** argv) try {
  const std::filesystem::path where = argc > 1 ? argv[1] : std::filesystem::temp_directory_path().c_str();
  measure(where, {"100,000 files in 1,000 folders", 1'000, 100});
  measure(where, {"100,000 files in one folder", 1, 100'000});
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
