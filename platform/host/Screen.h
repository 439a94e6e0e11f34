#pragma once

namespace host {

/// What the platform asks of whoever draws the view tree. Main thread.
class Screen {
 public:
  virtual ~Screen() = default;
  /// Something changed: walk `UIWindow::takeChanges` before the next frame. May be called any number of times.
  virtual void needsFrame() = 0;
  /// The size of the window in points, as it is now.
  virtual double width() const = 0;
  virtual double height() const = 0;
  /// Whether the user (or the window manager) can give the window any size. False on devices where an app
  /// always has the whole screen.
  virtual bool isResizable() const = 0;
  /// Whether the desktop asks for as little motion as possible.
  virtual bool reducesMotion() const = 0;
};

}  // namespace host
