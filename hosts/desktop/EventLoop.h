#pragma once

#include "platform/host/MainLoop.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace desktop {

/// The platform's main loop on Qt's.
class EventLoop final : public QObject, public host::MainLoop {
  Q_OBJECT

 public:
  EventLoop();

  double now() const override;
  void wakeAt(double time) override;
  void post(std::function<void()> work) override;

 private:
  QElapsedTimer clock_;
  QTimer wakeUp_;
};

}  // namespace desktop
