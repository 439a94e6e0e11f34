// What a query of a large library costs: quillop-library-bench [FILES]
//
// Fills an index with FILES films (100,000 unless told otherwise) in a temporary folder, and prints what opening and
// querying it takes and how much memory the answer holds, beside what the `sqlite3` program takes to print the same
// rows of the same file. The two alternate, so that whatever else the machine does meets both.

#include "benches/Measuring.h"
#include "hosts/medialibrary/Index.h"
#include "hosts/medialibrary/IndexSchema.h"
#include "platform/host/MediaLibrary.h"
#include "tests/host/probe/TemporaryFolder.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace {

using benches::median;
using benches::secondsOf;

constexpr std::uint64_t homeVideo = 8192;
constexpr int repetitions = 7;

using Words = std::vector<std::string>;

/// Names as people and cameras give them, the same at every run.
class Names {
 public:
  std::string path() {
    switch (number(4)) {
      case 0:
        return "/home/maria/Video/Vacanze/" + word(places_) + " " + year() + "/VID_" + year() + digits(4) + "_" +
               digits(6) + ".mp4";
      case 1:
        return "/media/maria/Archivio/Serie/La " + word(things_) + " di " + word(places_) + "/Stagione " +
               std::to_string(1 + number(9)) + "/La " + word(things_) + " di " + word(places_) + " - S" + digits(2) +
               "E" + digits(2) + " - " + phrase() + ".mkv";
      case 2:
        return "/media/maria/Archivio/Film/" + phrase() + " (" + year() + ")/" + phrase() + " (" + year() + ") " +
               digits(3) + ".mkv";
      default:
        return "/home/maria/Video/" + phrase() + " " + digits(5) + ".mp4";
    }
  }
  /// What three films in ten have in their tags.
  std::optional<std::string> title() {
    if (number(10) >= 3) return std::nullopt;
    return phrase() + " " + digits(3);
  }

 private:
  std::size_t number(std::size_t below) { return generator_() % below; }
  const std::string& word(const Words& words) { return words[number(words.size())]; }
  std::string phrase() { return word(things_) + " " + word(links_) + " " + word(places_); }
  std::string year() { return std::to_string(1960 + number(65)); }
  std::string digits(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += static_cast<char>('0' + number(10));
    return text;
  }

  std::mt19937 generator_{1};
  Words things_ = {"Città",    "Estate",  "Notte",   "Perché no", "Gita",  "Compleanno", "Èra",     "Matrimonio",
                   "Concerto", "Lezione", "Partita", "Übung",     "Caffè", "Natale",     "Viaggio", "Il ragazzo"};
  Words links_ = {"a", "di", "sul mare di", "nella valle di", "con gli zii a", "prima di", "e"};
  Words places_ = {"Forlì", "Roma",    "Milano",  "Santa Margherita Ligure", "Bari",    "Zürich",   "Cefalù",
                   "Nuoro", "Bolzano", "Ålesund", "San Gimignano",           "Trieste", "Agrigento"};
};

void fill(medialibrary::Index& index, std::size_t count) {
  Names names;
  index.begin();
  for (std::size_t added = 0; added < count;) {
    const medialibrary::VideoFile file{names.path(), 1'000'000'000, 1'700'000'000, 0, 42, added + 1};
    if (index.fileAt(file.path)) continue;
    medialibrary::Finding finding;
    finding.isReadable = true;
    finding.title = names.title();
    finding.duration = 60.0 + static_cast<double>(added % 7'000);
    finding.hasPicture = true;
    index.settle(index.add(file), file, finding);
    ++added;
  }
  index.commit();
}

/// The process's share of memory in MiB.
double memory() {
  std::ifstream file("/proc/self/smaps_rollup");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("Pss:")) return std::stod(line.substr(4)) / 1024.0;
  }
  return 0.0;
}

void printWithShell(const std::string& path) {
  const std::string query = "SELECT path, title, duration FROM file WHERE media_type = " + std::to_string(homeVideo) +
                            " AND " + medialibrary::listedFilesOnly + " ORDER BY sort_key, path";
  benches::runUnseen({"sqlite3", path, query});
}

void printMemory(const std::string& path) {
  const auto reader = medialibrary::Index::openForReading(path);
  reader->counts(homeVideo);
  const double before = memory();
  const auto items = reader->items(homeVideo);
  std::printf("memory of the answer           %8.1f MiB\n", memory() - before);
  std::printf("one item of it                 %8.2f us\n", 1e6 / static_cast<double>(items->count()) * secondsOf([&] {
                                                             for (std::size_t i = 0; i < items->count(); ++i)
                                                               items->item(i);
                                                           }));
  std::printf("counts                         %8.2f ms\n", 1e3 * secondsOf([&] { reader->counts(homeVideo); }));
}

void printTimes(const std::string& path) {
  const auto reader = medialibrary::Index::openForReading(path);
  std::vector<double> opening;
  std::vector<double> querying;
  std::vector<double> shell;
  for (int i = 0; i < repetitions; ++i) {
    opening.push_back(secondsOf([&] { medialibrary::Index::openForReading(path)->items(homeVideo); }));
    querying.push_back(secondsOf([&] { reader->items(homeVideo); }));
    shell.push_back(secondsOf([&] { printWithShell(path); }));
  }
  std::printf("openForReading and items       %8.2f ms\n", 1e3 * median(opening));
  std::printf("items                          %8.2f ms\n", 1e3 * median(querying));
  std::printf("the same rows by sqlite3       %8.2f ms\n", 1e3 * median(shell));
  std::printf("openForReading and items / sqlite3 %.2f\n", median(opening) / median(shell));
}

void run(std::size_t count) {
  const TemporaryFolder folder;
  const std::string path = folder / "library.db";
  const medialibrary::Order order("it_IT");
  const double filling = secondsOf([&] { fill(*medialibrary::Index::open(path, order), count); });
  std::printf("%zu files, index of %.1f MiB\n", count,
              static_cast<double>(std::filesystem::file_size(path)) / 1024 / 1024);
  std::printf("filling                        %8.2f s\n", filling);
  printMemory(path);
  printTimes(path);
  std::printf("opening for writing, checked   %8.2f ms\n",
              1e3 * secondsOf([&] { medialibrary::Index::open(path, order); }));
  const medialibrary::Order swedish("sv_SE");
  std::printf("sorting for another language   %8.2f s\n",
              secondsOf([&] { medialibrary::Index::open(path, swedish); }));
}

}  // namespace

int main(int count, char** arguments) {
  try {
    run(count > 1 ? std::stoul(arguments[1]) : 100'000);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
