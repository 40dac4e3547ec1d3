#include "viewer/colors/ColorsDraft.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "client/mapping/Coloring.h"
#include "viewer/colors/Legend.h"

namespace vlclientui::test {
namespace {

using client::Coloring;
using client::ValueSpan;
using viewer::SpanBy;

class ColorsDraft : public testing::Test {
 protected:
  static client::ServiceColors fourBands() {
    client::ServiceColors colors;
    for (int number = 1; number <= 4; ++number)
      colors.bands.push_back({number, "Band " + std::to_string(number), ValueSpan{0, 65535}});
    colors.decided.bands = {4, 3, 2};
    colors.decided.lowest = {10, 20, 30};
    colors.decided.highest = {110, 120, 130};
    return colors;
  }
  static client::BandSpread spread(double from) {
    return {{from + 2, from + 98}, {from, from + 100}, 7, 0.5};
  }
  viewer::ColorsDraft draft_{fourBands(), std::nullopt};
};

TEST_F(ColorsDraft, BeginsAsTheServiceDecidesAndKeepsNothingOfThat) {
  EXPECT_EQ(draft_.stretch(), fourBands().decided);
  EXPECT_EQ(draft_.text(), "");
  EXPECT_TRUE(draft_.missing().empty());
}

TEST_F(ColorsDraft, BeginsWithWhatWasChosenBefore) {
  client::Stretch chosen;
  chosen.coloring = Coloring::Ramp;
  chosen.ramp = client::Ramp::Lagoon;
  const viewer::ColorsDraft draft(fourBands(), chosen);
  EXPECT_EQ(draft.stretch(), chosen);
  EXPECT_EQ(client::stretchOf(draft.text()), chosen);
}

TEST_F(ColorsDraft, TakesTheUsualSpanOfABandThatComesIn) {
  draft_.setBand(1, 1);
  EXPECT_EQ(draft_.missing(), std::vector<int>{1});
  EXPECT_EQ(draft_.stretch().lowest[1], 20);
  draft_.learn({1}, {spread(500)});
  EXPECT_TRUE(draft_.missing().empty());
  EXPECT_EQ(draft_.stretch().lowest[1], 502);
  EXPECT_EQ(draft_.stretch().highest[1], 598);
  EXPECT_EQ(draft_.stretch().lowest[0], 10);
}

TEST_F(ColorsDraft, ShowsBytesThatComeInAsTheyAre) {
  auto colors = fourBands();
  colors.bands[0].typeSpan = ValueSpan{0, 255};
  viewer::ColorsDraft draft(colors, std::nullopt);
  draft.setBand(1, 1);
  EXPECT_TRUE(draft.missing().empty());
  EXPECT_EQ(draft.stretch().highest[1], 255);
}

TEST_F(ColorsDraft, UsesPercentsEndsAndTheType) {
  draft_.use(SpanBy::Whole);
  EXPECT_EQ(draft_.missing(), (std::vector<int>{4, 3, 2}));
  draft_.learn({4, 3, 2}, {spread(400), spread(300), spread(200)});
  EXPECT_EQ(draft_.stretch().lowest, (std::array<double, 3>{400, 300, 200}));
  draft_.use(SpanBy::Usual);
  EXPECT_TRUE(draft_.missing().empty());
  EXPECT_EQ(draft_.stretch().highest, (std::array<double, 3>{498, 398, 298}));
  draft_.use(SpanBy::Type);
  EXPECT_EQ(draft_.stretch().highest, (std::array<double, 3>{65535, 65535, 65535}));
}

TEST_F(ColorsDraft, ASpanByHandCountsMoreThanASampleThatComesLate) {
  draft_.setBand(0, 1);
  draft_.setSpan(0, {5, 6});
  EXPECT_TRUE(draft_.missing().empty());
  draft_.learn({1}, {spread(500)});
  EXPECT_EQ(draft_.stretch().lowest[0], 5);
}

TEST_F(ColorsDraft, HasNoRangeOfATypeWithoutOne) {
  auto colors = fourBands();
  colors.bands[2].typeSpan.reset();
  const viewer::ColorsDraft draft(colors, std::nullopt);
  EXPECT_FALSE(draft.mayUse(SpanBy::Type));
  EXPECT_TRUE(draft.mayUse(SpanBy::Usual));
}

TEST_F(ColorsDraft, OffersWhatTheServiceCanBe) {
  const auto has = [](const viewer::ColorsDraft& draft, Coloring wanted) {
    return std::ranges::count(draft.colorings(), wanted) == 1;
  };
  EXPECT_TRUE(has(draft_, Coloring::Colors));
  EXPECT_FALSE(has(draft_, Coloring::Palette));
  auto classes = fourBands();
  classes.bands.resize(1);
  classes.hasClasses = true;
  classes.decided.coloring = Coloring::Palette;
  const viewer::ColorsDraft other(classes, std::nullopt);
  EXPECT_TRUE(has(other, Coloring::Palette));
  EXPECT_FALSE(has(other, Coloring::Colors));
  EXPECT_FALSE(other.mayUse(SpanBy::Usual));
}

TEST_F(ColorsDraft, ReliefIsAsSteepAsItsSampleTells) {
  draft_.setColoring(Coloring::Relief);
  EXPECT_EQ(draft_.spans(), 1U);
  EXPECT_EQ(draft_.missing(), std::vector<int>{4});
  draft_.learn({4}, {spread(0)});
  EXPECT_EQ(draft_.stretch().steepness, 7);
  EXPECT_EQ(draft_.stretch().roughness, 0.5);
}

TEST_F(ColorsDraft, ShadingHasAnExaggerationAndNoSpan) {
  draft_.setColoring(Coloring::Shading);
  EXPECT_EQ(draft_.spans(), 0U);
  EXPECT_EQ(draft_.bandCount(), 1U);
  EXPECT_TRUE(draft_.hasExaggeration());
  EXPECT_TRUE(draft_.missing().empty());
  draft_.setExaggeration(5);
  EXPECT_EQ(client::stretchOf(draft_.text()), draft_.stretch());
}

TEST_F(ColorsDraft, GoesBackToWhatTheServiceDecides) {
  draft_.setColoring(Coloring::Ramp);
  draft_.setLift(2);
  EXPECT_NE(draft_.text(), "");
  draft_.reset();
  EXPECT_EQ(draft_.text(), "");
  EXPECT_TRUE(draft_.missing().empty());
}

TEST(Legend, HasALineForEachColorOfThree) {
  client::Stretch stretch;
  stretch.bands = {4, 3, 2};
  stretch.highest = {110, 120.5, 130};
  const auto lines = viewer::legendOf(stretch, {{{1, "Blue"}, {2, "Blue"}, {3, "Near infrared"}}});
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].text, "Red: Band 4");
  EXPECT_EQ(lines[1].text, "Green: Near infrared");
  EXPECT_EQ(lines[2].text, "Blue");
  EXPECT_EQ(lines[1].high, "120.5");
  EXPECT_EQ(lines[2].colors.pixelColor(127, 0), QColor(0, 0, 255));
}

TEST(Legend, HasTheColorsThatTheMapHas) {
  client::Stretch stretch;
  stretch.coloring = Coloring::Ramp;
  stretch.ramp = client::Ramp::Heat;
  stretch.lowest[0] = -5;
  stretch.highest[0] = 5;
  const auto lines = viewer::legendOf(stretch);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].low, "-5");
  const auto first = client::rampColor(client::Ramp::Heat, 0);
  EXPECT_EQ(lines[0].colors.pixelColor(0, 0), QColor(first[0], first[1], first[2]));
  const auto last = client::rampColor(client::Ramp::Heat, 1);
  EXPECT_EQ(lines[0].colors.pixelColor(127, 0), QColor(last[0], last[1], last[2]));
}

TEST(Legend, ListsClassesByNameOrNumberAndOfManyTheFirst) {
  client::Stretch stretch;
  stretch.coloring = Coloring::Palette;
  client::ServiceWords words;
  words.classes = {{1, {20, 40, 200, 255}, "water"}, {7, {0, 90, 0, 255}, ""}};
  auto lines = viewer::legendOf(stretch, words);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_TRUE(lines[0].isPatch());
  EXPECT_EQ(lines[0].text, "water");
  EXPECT_EQ(lines[0].colors.pixelColor(0, 0), QColor(20, 40, 200));
  EXPECT_EQ(lines[1].text, "7");
  words.classes.resize(20);
  lines = viewer::legendOf(stretch, words);
  ASSERT_EQ(lines.size(), 17U);
  EXPECT_EQ(lines.back().text, "and 4 more");
}

TEST(Legend, TellsClassesThatAreNotKnownAndLightInWords) {
  client::Stretch stretch;
  stretch.coloring = Coloring::Palette;
  EXPECT_TRUE(viewer::legendOf(stretch)[0].colors.isNull());
  stretch.coloring = Coloring::Shading;
  EXPECT_TRUE(viewer::legendOf(stretch)[0].text.contains("Band 1"));
}

}  // namespace
}  // namespace vlclientui::test
