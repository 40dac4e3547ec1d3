#include "widgets/RowListView.h"

#include <QHeaderView>
#include <QTest>

#include <gmock/gmock.h>

#include "platform/LibXmlService.h"
#include "widgets/RowTableModel.h"

namespace vlclientui::widgets {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;

std::shared_ptr<const engine::ListModel> listOf(const std::string& rows) {
  const platform::LibXmlService xml(platform::PathTranslation("/home/user"));
  auto columns =
      engine::parseListFields(xml, "<list_fields><Name width='15'/><Pixel_Type width='5'/></list_fields>");
  return std::make_shared<engine::ListModel>(
      columns.value(), engine::ListRows::parse(xml, "<list_values>" + rows + "</list_values>"));
}

std::string row(const std::string& name, const std::string& icon = "VLSERVICE") {
  return "<r icon=\"" + icon + "\" displayName=\"" + name + "\" Pixel_Type=\"UInt16\"/>";
}

class RowListViewTest : public testing::Test {
 protected:
  void SetUp() override {
    view.resize(600, 300);
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.setFocus();
  }
  void click(int rowNumber) { QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, center(rowNumber)); }
  QPoint center(int rowNumber) { return view.visualRect(view.model()->index(rowNumber, 0)).center(); }
  std::vector<std::string> takeLog() { return std::exchange(log, {}); }

  std::vector<std::string> log;
  RowListView view{listOf(row("Europe", "fldr") + row("alpha") + row("beta") + row("gamma")),
                   {[this](std::size_t r) { log.push_back("click " + std::to_string(r)); },
                    [this](std::size_t r) { log.push_back("activate " + std::to_string(r)); },
                    [this] { log.emplace_back("backspace"); }}};
};

TEST_F(RowListViewTest, CellsAndTitlesAreThoseOfTheList) {
  const auto& model = *view.model();
  EXPECT_EQ(model.rowCount(), 4);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Pixel Type");
  EXPECT_EQ(model.index(1, 0).data().toString(), "alpha");
  EXPECT_EQ(model.index(1, 1).data().toString(), "UInt16");
  EXPECT_FALSE(model.index(0, 0).data(Qt::DecorationRole).isNull());
  EXPECT_TRUE(model.index(0, 1).data(Qt::DecorationRole).isNull());
}

TEST_F(RowListViewTest, MessageRowIsItalicAndHasNoPicture) {
  view.setList(listOf(row("(empty)", "")));
  const QModelIndex message = view.model()->index(0, 0);
  EXPECT_TRUE(message.data(Qt::FontRole).value<QFont>().italic());
  EXPECT_TRUE(message.data(Qt::DecorationRole).isNull());
  EXPECT_TRUE(view.isFirstColumnSpanned(0, QModelIndex()));
}

TEST_F(RowListViewTest, SingleClickReportsTheRow) {
  click(2);
  EXPECT_THAT(takeLog(), ElementsAre("click 2"));
  click(2);
  EXPECT_THAT(takeLog(), ElementsAre("click 2"));
}

TEST_F(RowListViewTest, ClickBesideTheRowsReportsNothing) {
  click(1);
  takeLog();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(50, view.viewport()->height() - 5));
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(RowListViewTest, DoubleClickReportsOneClickAndThenTheActivation) {
  click(1);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, center(1));
  EXPECT_EQ(log.front(), "click 1");
  EXPECT_EQ(log.back(), "activate 1");
  EXPECT_EQ(std::ranges::count(log, "activate 1"), 1);
}

TEST_F(RowListViewTest, KeysMoveTheSelectionAndReportIt) {
  click(0);
  takeLog();
  QTest::keyClick(&view, Qt::Key_Down);
  QTest::keyClick(&view, Qt::Key_End);
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_THAT(takeLog(), ElementsAre("click 1", "click 3"));
}

TEST_F(RowListViewTest, FirstArrowSelectsTheFirstRow) {
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_THAT(takeLog(), ElementsAre("click 0"));
}

TEST_F(RowListViewTest, TypingFindsARow) {
  click(0);
  takeLog();
  QTest::keyClicks(&view, "ga");
  EXPECT_EQ(view.selectedRow(), 3U);
  EXPECT_EQ(log.back(), "click 3");
}

TEST_F(RowListViewTest, EnterActivatesTheSelectedRow) {
  click(1);
  takeLog();
  QTest::keyClick(&view, Qt::Key_Return);
  QTest::keyClick(&view, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_THAT(takeLog(), ElementsAre("activate 1", "activate 1"));
}

TEST_F(RowListViewTest, EnterWithoutASelectionActivatesTheMarkedRowAsADoubleClickWould) {
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_THAT(takeLog(), ElementsAre("click 0", "activate 0"));
}

TEST_F(RowListViewTest, EnterInAListWithoutRowsReportsNothing) {
  view.setList(listOf(""));
  QTest::keyClick(&view, Qt::Key_Return);
  QTest::keyClick(&view, Qt::Key_Home);
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(RowListViewTest, KeysWorkAtOnceInTheRowsOfAnotherFolder) {
  for (const auto& [key, report] : {std::pair{Qt::Key_Home, "click 0"},
                                    {Qt::Key_End, "click 2"},
                                    {Qt::Key_PageDown, "click 2"},
                                    {Qt::Key_PageUp, "click 0"},
                                    {Qt::Key_Down, "click 0"},
                                    {Qt::Key_Up, "click 0"}}) {
    click(3);
    view.setList(listOf(row("x") + row("y") + row("z")));
    takeLog();
    QTest::keyClick(&view, key);
    EXPECT_THAT(takeLog(), ElementsAre(report));
    view.setList(listOf(row("a") + row("b") + row("c") + row("d")));
  }
}

TEST_F(RowListViewTest, EndSelectsTheOnlyRowOfAnotherFolder) {
  view.setList(listOf(row("x")));
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_THAT(takeLog(), ElementsAre("click 0"));
}

TEST_F(RowListViewTest, BackspaceIsReportedAlsoWithoutRows) {
  QTest::keyClick(&view, Qt::Key_Backspace);
  view.setList(listOf(""));
  QTest::keyClick(&view, Qt::Key_Backspace);
  EXPECT_THAT(takeLog(), ElementsAre("backspace", "backspace"));
}

TEST_F(RowListViewTest, NewRowsReportNothingAndSelectNone) {
  click(3);
  takeLog();
  view.setList(listOf(row("x") + row("y")));
  EXPECT_FALSE(view.selectedRow());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(RowListViewTest, RowsReplacedByADoubleClickAreNotClicked) {
  RowListView* self = &view;
  RowListView folders(listOf(row("Europe", "fldr")),
                      {[this](std::size_t r) { log.push_back("click " + std::to_string(r)); },
                       [&](std::size_t) { self->setList(listOf(row("inside"))); }, [] {}});
  self = &folders;
  folders.resize(400, 200);
  folders.show();
  const QPoint place = folders.visualRect(folders.model()->index(0, 0)).center();
  QTest::mouseClick(folders.viewport(), Qt::LeftButton, {}, place);
  log.clear();
  QTest::mouseDClick(folders.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(folders.model()->index(0, 0).data().toString(), "inside");
  EXPECT_FALSE(folders.selectedRow());
}

TEST_F(RowListViewTest, ColumnsShareTheWidthByTheirProportions) {
  const int name = view.header()->sectionSize(0);
  const int type = view.header()->sectionSize(1);
  EXPECT_NEAR(name, type * 3, 4);
  EXPECT_NEAR(name + type, view.viewport()->width(), 2);
}

TEST_F(RowListViewTest, WidthsOfAPersonStayWhileTheColumnsDo) {
  view.header()->resizeSection(0, 123);
  view.setList(listOf(row("x")));
  view.resize(800, 300);
  EXPECT_EQ(view.header()->sectionSize(0), 123);
}

TEST_F(RowListViewTest, OfAHundredThousandRowsTheLastAndTheFirstAreReachedByKeys) {
  std::string rows;
  for (int number = 0; number < 100000; ++number) rows += row("service " + std::to_string(number));
  const auto list = listOf(rows);
  view.setList(list);
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_EQ(log.back(), "click 99999");
  QTest::keyClick(&view, Qt::Key_Home);
  EXPECT_EQ(log.back(), "click 0");
}

TEST(ShareWidth, NoColumnFallsBelowItsLeastWidth) {
  EXPECT_THAT(shareWidth(400, {3, 1}, {10, 10}), ElementsAre(300, 100));
  EXPECT_THAT(shareWidth(400, {9, 1}, {10, 100}), ElementsAre(300, 100));
  EXPECT_THAT(shareWidth(50, {1, 1, 1}, {40, 40, 40}), Each(Ge(40)));
  EXPECT_THAT(shareWidth(100, {}, {}), IsEmpty());
}

TEST(CutToFit, MakesColumnsNarrowerBeforeTheListScrolls) {
  EXPECT_THAT(cutToFit(400, {100, 100, 200}, 30), ElementsAre(100, 100, 200));
  EXPECT_THAT(cutToFit(250, {100, 100, 200}, 30), ElementsAre(100, 50, 100));
  EXPECT_THAT(cutToFit(150, {100, 100, 200}, 30), ElementsAre(100, 30, 33));
  EXPECT_THAT(cutToFit(50, {100, 20, 200}, 30), ElementsAre(100, 20, 30)) << "none grows";
  EXPECT_THAT(cutToFit(50, {}, 30), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::widgets
