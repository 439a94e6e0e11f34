#include "hosts/desktop/TerminationSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>

namespace desktop {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do next to nothing: it writes into this, and the main loop reads it.
volatile std::sig_atomic_t eventDescriptor = -1;

void tell(int /*signal*/) {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(eventDescriptor, &one, sizeof one);
}

/// A signal that whoever started the program has it ignore, as `nohup` does, stays ignored.
void handle(int signal, void (*handler)(int)) {
  if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> end) {
  eventDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  notifier_ = std::make_unique<QSocketNotifier>(eventDescriptor, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [end = std::move(end)] {
    std::uint64_t count = 0;
    if (read(eventDescriptor, &count, sizeof count) == sizeof count) end();
  });
  for (const int signal : handled) handle(signal, tell);
}

TerminationSignals::~TerminationSignals() {
  for (const int signal : handled) handle(signal, SIG_DFL);
  notifier_.reset();
  close(eventDescriptor);
}

}  // namespace desktop
