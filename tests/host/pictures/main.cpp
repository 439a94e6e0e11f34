#include <gtest/gtest.h>

#include <QAccessible>
#include <QGuiApplication>

int main(int argumentCount, char* arguments[]) {
  // Nothing of the machine's own is to be seen in the pictures.
  for (const auto* name : {"QT_SCALE_FACTOR", "QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS", "DBUS_SESSION_BUS_ADDRESS"}) {
    qunsetenv(name);
  }
  qputenv("FONTCONFIG_FILE", QUILLOP_PICTURE_FONTS);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_QUICK_BACKEND", "software");
  qputenv("QUILLOP_REDUCE_MOTION", "1");
  testing::InitGoogleTest(&argumentCount, arguments);
  const QGuiApplication application(argumentCount, arguments);
  QGuiApplication::setApplicationVersion(QStringLiteral("1.0.0"));
  QAccessible::setActive(true);
  return RUN_ALL_TESTS();
}
