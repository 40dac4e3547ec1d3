#include "widgets/ValueLabel.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace vlclientui::widgets {
namespace {

const QString chance = QString(QChar(0x200B));
const QString path = QStringLiteral("/data/imagery/Overlap_Study.sources");

TEST(ValueLabel, ShortTextsAndTextsWithBlanksStayAsTheyAre) {
  for (const QString text : {"", "Europe", "sixteen_signs_ab", "None (plain colors) of a  study\nin lines"})
    EXPECT_EQ(withLineBreakChances(text), text) << text.toStdString();
}

TEST(ValueLabel, ALongRunMayBreakBehindItsSigns) {
  EXPECT_EQ(withLineBreakChances("see " + path), "see /" + chance + "data/" + chance + "imagery/" + chance +
                                                     "Overlap_" + chance + "Study." + chance + "sources");
}

QString partedByChances(int count, const QString& part) {
  QStringList parts;
  for (int at = 0; at < count; ++at) parts << part;
  return parts.join(chance);
}

TEST(ValueLabel, ALongPartMayBreakAnywhereButInsideOneSign) {
  EXPECT_EQ(withLineBreakChances(QString(17, 'x')), partedByChances(17, "x"));
  const QString pair = QString::fromUcs4(U"\U0001F30D");
  EXPECT_EQ(withLineBreakChances(pair.repeated(9)), partedByChances(9, pair));
  const QString accented = QString::fromUtf8("a\xcc\x88");
  EXPECT_EQ(withLineBreakChances(accented.repeated(9)), partedByChances(9, accented));
}

TEST(ValueLabel, GivesItsValueAsItWasSet) {
  ValueLabel label;
  label.setValue(path);
  EXPECT_NE(label.text(), path);
  EXPECT_EQ(label.value(), path);
}

TEST(ValueLabel, WhatIsCopiedByKeysIsTheTextAsItWasGiven) {
  ValueLabel label;
  label.setValue(path);
  label.show();
  label.setSelection(0, static_cast<int>(label.text().size()));
  QApplication::clipboard()->clear();
  QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), path);
}

TEST(ValueLabel, ItsMenuSelectsAllAndCopies) {
  ValueLabel label;
  label.setValue(path);
  label.show();
  const auto choose = [&label](const QString& entry) {
    bool wasEnabled = false;
    QTimer::singleShot(0, [&] {
      auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      for (QAction* action : menu->actions()) {
        if (action->text() != entry) continue;
        wasEnabled = action->isEnabled();
        action->trigger();
      }
      menu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2), label.mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(&label, &event);
    return wasEnabled;
  };
  EXPECT_FALSE(choose("&Copy"));
  EXPECT_TRUE(choose("Select &All"));
  QApplication::clipboard()->clear();
  EXPECT_TRUE(choose("&Copy"));
  EXPECT_EQ(QApplication::clipboard()->text(), path);
}

}  // namespace
}  // namespace vlclientui::widgets
