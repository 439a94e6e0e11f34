#include "hosts/desktop/StandardOutput.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

namespace desktop {

StandardOutput::StandardOutput() {
  std::signal(SIGPIPE, SIG_IGN);
}

void StandardOutput::writeLine(std::string_view line) {
  std::string text(line);
  text += '\n';
  // Past stdio: a line is written in one piece and at once, also into a pipe, and a failure leaves no state behind.
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t count = write(STDOUT_FILENO, text.data() + written, text.size() - written);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    written += static_cast<std::size_t>(count);
  }
}

}  // namespace desktop
