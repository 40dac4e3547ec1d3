#include "viewer/values/ValuesText.h"

#include <gtest/gtest.h>

namespace vlclientui::test {
namespace {

using client::SourceValues;
using viewer::ReadValues;
using viewer::ValueLine;
using viewer::valueLineOf;

ReadValues readOf(std::vector<SourceValues> sources) {
  return {"Study", ReadValues::State::Read, std::move(sources)};
}

SourceValues sourceNamed(const char* name, bool isOnTop, double value) {
  SourceValues source{name, "7", {{"Year", "2019"}}};
  source.isOnTop = isOnTop;
  source.column = 3;
  source.row = 4;
  source.bands = {{1, "Red", "DN", value}};
  return source;
}

QStringList namesOf(const ValueLine& line) {
  QStringList names;
  for (const ValueLine& one : line.lines) names << one.name;
  return names;
}

TEST(ValuesText, HasTheValuesThatAreSeenFirstAndThenEachSource) {
  const auto line = valueLineOf(readOf({sourceNamed("a", false, 1), sourceNamed("b", true, 2)}));
  EXPECT_EQ(namesOf(line), (QStringList{"Red", "a", "b"}));
  EXPECT_EQ(line.lines[0].value, "2 DN");
  EXPECT_EQ(line.lines[1].value, "below");
  EXPECT_EQ(line.lines[2].value, "on top");
  EXPECT_EQ(namesOf(line.lines[2]), (QStringList{"Id", "Year", "Column, row", "Red"}));
  EXPECT_EQ(line.lines[2].lines[2].value, "3, 4");
}

TEST(ValuesText, TellsWhereItStands) {
  EXPECT_EQ(valueLineOf({"Study"}).value, "reading\u2026");
  EXPECT_EQ(valueLineOf({"Study", ReadValues::State::GivenUp}).value, "canceled");
  EXPECT_EQ(valueLineOf({"Study", ReadValues::State::Failed, {}, "no answer"}).value,
            "cannot be read: no answer");
  EXPECT_EQ(valueLineOf(readOf({})).value, "nothing here");
}

TEST(ValuesText, TellsHolesAndSourcesThatCannotBeRead) {
  SourceValues hole = sourceNamed("a", false, 0);
  hole.kind = SourceValues::Kind::Hole;
  hole.bands[0].value.reset();
  SourceValues broken{"b"};
  broken.kind = SourceValues::Kind::Unreadable;
  broken.problem = "gone";
  const auto line = valueLineOf(readOf({hole, broken}));
  EXPECT_EQ(line.lines[0].value, "no data here");
  EXPECT_EQ(line.lines[0].lines.back().value, "no data");
  EXPECT_EQ(line.lines[1].value, "cannot be read: gone");
  EXPECT_TRUE(line.lines[1].lines.empty());
}

TEST(ValuesText, HasClassesWithTheirColorAndComplexNumbers) {
  SourceValues source{"a"};
  source.isOnTop = true;
  source.bands = {{1, "Cover", "", 2, {}, "forest", std::array<std::uint8_t, 4>{10, 120, 20, 255}},
                  {2, "Echo", "", 0.5, -2}};
  const auto line = valueLineOf(readOf({source}));
  EXPECT_EQ(line.lines[0].value, "2 (forest)");
  EXPECT_EQ(line.lines[0].color, QColor(10, 120, 20));
  EXPECT_EQ(line.lines[1].value, "0.5 - 2i");
  EXPECT_FALSE(line.lines[1].color.isValid());
}

}  // namespace
}  // namespace vlclientui::test
