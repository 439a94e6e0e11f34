#include "hosts/qtquick/GraphicsDevices.h"
#include "hosts/qtquick/ScreenHost.h"

#include <QByteArray>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

#include <algorithm>
#include <array>

namespace qtquick {

namespace {

bool userHasChosen() {
  return !qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") || !qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND");
}

/// What OpenGL says draws for it; empty where there is no OpenGL.
QByteArray renderer() {
  QOpenGLContext context;
  if (!context.create()) return {};
  QOffscreenSurface surface;
  surface.setFormat(context.format());
  surface.create();
  if (!surface.isValid() || !context.makeCurrent(&surface)) return {};
  const auto* const name = context.functions()->glGetString(GL_RENDERER);
  QByteArray result(reinterpret_cast<const char*>(name));
  context.doneCurrent();
  return result.toLower();
}

bool hasGraphicsProcessor() {
  constexpr std::array<const char*, 4> rasterisers{"llvmpipe", "softpipe", "swrast", "software rasterizer"};
  if (!hasGraphicsDevice("/dev")) return false;
  const QByteArray name = renderer();
  return !name.isEmpty() && std::none_of(rasterisers.begin(), rasterisers.end(),
                                         [&](const char* rasteriser) { return name.contains(rasteriser); });
}

}  // namespace

void chooseGraphics() {
  if (userHasChosen()) return;
  QQuickWindow::setGraphicsApi(hasGraphicsProcessor() ? QSGRendererInterface::OpenGL
                                                      : QSGRendererInterface::Software);
}

}  // namespace qtquick
