#include "hosts/desktop/StandardOutput.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include <unistd.h>

namespace desktop {
namespace {

/// Standard output leads into a pipe while this exists.
class CapturedOutput {
 public:
  CapturedOutput() : saved_(dup(STDOUT_FILENO)) {
    if (pipe(ends_.data()) == 0) dup2(ends_[1], STDOUT_FILENO);
    close(ends_[1]);
  }
  ~CapturedOutput() {
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    closeReader();
  }
  std::string readOnce() const {
    std::array<char, 256> buffer{};
    const ssize_t count = read(ends_[0], buffer.data(), buffer.size());
    return {buffer.data(), static_cast<std::size_t>(count < 0 ? 0 : count)};
  }
  void closeReader() {
    if (ends_[0] >= 0) close(ends_[0]);
    ends_[0] = -1;
  }

 private:
  int saved_;
  std::array<int, 2> ends_{-1, -1};
};

TEST(StandardOutput, LineIsWrittenAtOnceInOnePieceWithItsBlanks) {
  StandardOutput console;
  const CapturedOutput output;
  console.writeLine("-------------- chiudiFilm chiudo il film ");
  EXPECT_EQ(output.readOnce(), "-------------- chiudiFilm chiudo il film \n");
}

TEST(StandardOutput, ClosedOutputLosesTheLineAndNothingElse) {
  StandardOutput console;
  CapturedOutput output;
  output.closeReader();
  console.writeLine("one");
  console.writeLine("two");
  SUCCEED() << "the process is still there";
}

}  // namespace
}  // namespace desktop
