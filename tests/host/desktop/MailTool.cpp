// Does with the user's mail program what the app does with it, and says what came of it. A program of its own,
// because what is installed for the user is found through the environment, once in a program's life.

#include "hosts/desktop/MailPrograms.h"

#include <QGuiApplication>
#include <QThread>

#include <cstdio>

namespace {

class Loop final : public host::MainLoop {
 public:
  double now() const override { return 0; }
  void wakeAt(double /*time*/) override {}
  void post(std::function<void()> work) override {
    QMetaObject::invokeMethod(qApp, std::move(work), Qt::QueuedConnection);
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication application(argc, argv);
  Loop loop;
  desktop::MailPrograms mail(loop, argv[1]);
  std::puts(mail.canCompose() ? "can compose" : "cannot compose");
  bool isWithin = true;
  mail.compose({{"support@example.org"}, "", "<p>Help from Quillop ios.</p>", true}, [&](bool handedOver) {
    std::puts(handedOver ? "handed over" : "not handed over");
    if (isWithin) std::puts("from within");
    if (QThread::currentThread() != application.thread()) std::puts("on another thread");
    QGuiApplication::quit();
  });
  isWithin = false;
  return QGuiApplication::exec();
}
