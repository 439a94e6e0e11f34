#pragma once

#include "platform/foundation/NSObject.h"
#include "platform/host/MediaLibrary.h"
#include "platform/host/Screen.h"

#include <functional>
#include <memory>
#include <string>

class QImage;
class QQmlContext;
class QQuickItem;
class QQuickWindow;
class UIWindow;

namespace qtquick {

/// Chooses how Qt Quick draws. To be called once, after the application object was made and before the first window:
/// asks OpenGL for its renderer in a context of its own, unless there is no device that could draw. Where that is a
/// rasteriser on the processor (llvmpipe, softpipe, swrast) or there is no OpenGL at all, the software scene graph
/// draws, which is several times cheaper than OpenGL made in software; otherwise OpenGL does. A choice that the user
/// made (`QT_QUICK_BACKEND`, `QSG_RHI_BACKEND`) stands.
void chooseGraphics();

/// Finds the picture of a library item, by the `UIImage::source` that is neither a URL nor a resource: a path. The
/// answer's longer side is at most `largestSidePixels`, or a little more; an empty image where there is none. Called
/// on threads of the screen host, several at a time.
using ArtworkLoader = std::function<QImage(const std::string& path, int largestSidePixels)>;

/// The items of the library that the app has in its lists, in the order of the rows; none where nobody knows. Tables
/// only ask the app for rows in sight; this is how a title out of sight is found. Main thread.
using ListedItems = std::function<std::shared_ptr<const host::LibraryItems>()>;

/// What the person in front of the window did to it as a whole. Main thread, outside any turn.
struct WindowEvents {
  std::function<void()> closed;  ///< asked for the window to be closed; it stays open until somebody hides it
  std::function<void()> hidden;  ///< the window is no longer in sight (minimised)
  std::function<void()> shown;   ///< it is again
  /// Asked for the window's menu: with the Menu key or Shift and F10, or by resting a finger or pressing the right
  /// button on a free place of the bar above the films. Not while anything lies over the main screen.
  std::function<void()> menuRequested = nullptr;
};

/// Draws the view tree of one `UIWindow` in a window of its own and delivers touches, pointer, keys and the
/// accessibility interface's actions to it, each in a `RunLoop::Turn` of its own. Main thread.
///
/// The order of things: the application object, `chooseGraphics`, the `ScreenHost`, `window().show()`, the platform
/// made from it, `UIApplication::launch`, `attach`. Before `attach` the window is empty and `needsFrame` is ignored.
class ScreenHost final : public host::Screen {
 public:
  /// The window exists from here on, 1024 x 640 points large, and is not shown.
  ScreenHost(ArtworkLoader artwork, WindowEvents events);
  ~ScreenHost() override;
  ScreenHost(const ScreenHost&) = delete;
  ScreenHost& operator=(const ScreenHost&) = delete;

  /// The window. Its size and place may be set before it is shown.
  QQuickWindow& window();
  /// Shows the window as this device does: over the whole screen where there is no window manager.
  void show();
  /// Into full screen, or out of it. Does nothing where there is no window manager.
  void toggleFullScreen();
  /// Lets people find titles in lists by typing.
  void setListedItems(ListedItems items);
  /// Draws `window` from now on, or nothing when there is none. The window is not kept alive.
  void attach(const Strong<UIWindow>& window);
  /// Lays `item`, which is not the app's, over everything in the window until it is destroyed, and gives it the
  /// focus. Meanwhile nothing of the app takes input, focus or attention, whatever the app shows; Escape and Back
  /// call `escape` of the item that was laid last, outside any turn. The item stays the caller's.
  void cover(QQuickItem& item, std::function<void()> escape);

  /// Lays `item`, which is not the app's, over the app's main screen until it is destroyed, as large as the window.
  /// The app is not covered: what `item` does not handle itself reaches it, and the screens that the app presents lie
  /// over both. Only while none does, and nothing covers the app, `item` is enabled. It does not get the focus, and
  /// does not hear of Escape and Back. The item stays the caller's.
  void decorate(QQuickItem& item);

  /// Tells `context` what the screens' own components know of the desktop: the contrast and the size of text that it
  /// wants. To be called before components that lie over the app are made in it; the screen outlives it.
  void share(QQmlContext& context);

  void needsFrame() override;
  double width() const override;
  double height() const override;
  bool isResizable() const override;
  bool reducesMotion() const override;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace qtquick
