#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>

int main(int argumentCount, char* arguments[]) {
  // No display is needed, and no animation is waited for.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QUILLOP_REDUCE_MOTION", "1");
  // Every movement of a synthetic finger arrives at once, not with the next frame.
  qputenv("QML_NO_TOUCH_COMPRESSION", "1");
  testing::InitGoogleTest(&argumentCount, arguments);
  const QGuiApplication application(argumentCount, arguments);
  QAccessible::setActive(true);
  return RUN_ALL_TESTS();
}
