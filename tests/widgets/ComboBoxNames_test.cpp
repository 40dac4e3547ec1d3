#include "widgets/ComboBoxNames.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>

#include <gtest/gtest.h>

namespace vlclientui::test {
namespace {

/// A label and the box that it leads to.
class ComboBoxNames : public testing::Test {
 protected:
  ComboBoxNames() {
    (new QHBoxLayout(&window))->addWidget(&label);
    window.layout()->addWidget(&box);
    label.setBuddy(&box);
    box.addItems({"PNG", "JPEG"});
  }
  QString told(QAccessible::Text kind) { return QAccessible::queryAccessibleInterface(&box)->text(kind); }

  QWidget window;
  QLabel label{"For&mat && size:"};
  QComboBox box;
};

TEST_F(ComboBoxNames, ABoxIsCalledByItsLabelAndTellsItsText) {
  widgets::nameByLabel(box);
  EXPECT_EQ(told(QAccessible::Name), "Format & size");
  EXPECT_EQ(told(QAccessible::Value), "PNG");
  EXPECT_EQ(told(QAccessible::Description), "PNG");
  box.setCurrentIndex(1);
  EXPECT_EQ(told(QAccessible::Name), "Format & size");
  EXPECT_EQ(told(QAccessible::Value), "JPEG");
}

TEST_F(ComboBoxNames, ABoxWithoutALabelIsCalledByItsOwnName) {
  label.setBuddy(nullptr);
  box.setAccessibleName("Format");
  widgets::nameByLabel(box);
  EXPECT_EQ(told(QAccessible::Name), "Format");
}

TEST_F(ComboBoxNames, ABoxOfTheHostStaysAsItIs) { EXPECT_NE(told(QAccessible::Description), "PNG"); }

TEST_F(ComboBoxNames, ABoxIsOpenedByItsActions) {
  widgets::nameByLabel(box);
  window.show();
  auto* const accessible = QAccessible::queryAccessibleInterface(&box);
  EXPECT_EQ(accessible->role(), QAccessible::ComboBox);
  EXPECT_FALSE(accessible->state().expanded);
  accessible->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(accessible->state().expanded);
  accessible->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_FALSE(accessible->state().expanded);
}

TEST_F(ComboBoxNames, ItsPartsBelongToIt) {
  box.setEditable(true);
  widgets::nameByLabel(box);
  auto* const accessible = QAccessible::queryAccessibleInterface(&box);
  ASSERT_EQ(accessible->childCount(), 2);
  for (int part = 0; part < 2; ++part) {
    ASSERT_NE(accessible->child(part), nullptr);
    EXPECT_EQ(accessible->indexOfChild(accessible->child(part)), part);
  }
}

}  // namespace
}  // namespace vlclientui::test
