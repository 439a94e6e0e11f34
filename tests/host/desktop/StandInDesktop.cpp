// The services of a desktop as a program, for trying the built app on a message bus of its own: both addresses in its
// environment name that bus. Commands on standard input, one a line: lock, unlock, sleep, wake, blank, unblank. What
// the app asks for is told on standard output.

#include "tests/host/desktop/StandInServices.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <iostream>
#include <map>
#include <string>

namespace {

void say(const std::string& line) {
  std::cout << line << std::endl;  // at once, for whoever waits for it
}

/// Says each change of what `state` gives.
class Report final {
 public:
  Report(std::string name, std::function<int()> state) : name_(std::move(name)), state_(std::move(state)) {}
  void look() {
    const int now = state_();
    if (now != last_) say(name_ + " " + std::to_string(now));
    last_ = now;
  }

 private:
  std::string name_;
  std::function<int()> state_;
  int last_ = 0;
};

int heldDelays(const desktop::StandInLogin& login) {
  int held = 0;
  for (std::size_t index = 0; index < login.readingEnds.size(); ++index) held += login.isHeld(index) ? 1 : 0;
  return held;
}

}  // namespace

int main(int argc, char* argv[]) {
  QCoreApplication application(argc, argv);
  desktop::StandInLogin login(QDBusConnection::systemBus());
  desktop::StandInScreenSaver saver(QDBusConnection::sessionBus());
  const std::map<std::string, std::function<void()>> commands{
      {"lock", [&] { emit login.session.Lock(); }},         {"unlock", [&] { emit login.session.Unlock(); }},
      {"sleep", [&] { emit login.PrepareForSleep(true); }}, {"wake", [&] { emit login.PrepareForSleep(false); }},
      {"blank", [&] { emit saver.ActiveChanged(true); }},   {"unblank", [&] { emit saver.ActiveChanged(false); }}};
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QCoreApplication::exit();
    const auto command = commands.find(line);
    if (command != commands.end()) command->second();
  });
  Report delays("sleep delays", [&] { return heldDelays(login); });
  Report promises("awake", [&] { return static_cast<int>(saver.open.size()); });
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [&] {
    delays.look();
    promises.look();
  });
  look.start(20);
  say("ready");
  return QCoreApplication::exec();
}
