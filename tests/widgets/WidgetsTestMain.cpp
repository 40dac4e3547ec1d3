#include <QApplication>
#include <QFont>
#include <QStyleFactory>

#include <gtest/gtest.h>

/// One application for all tests of windows, with style and font fixed so that sizes are the same everywhere.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
  QApplication::setApplicationDisplayName(QStringLiteral("Sample host"));
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
