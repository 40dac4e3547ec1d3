// A person who chooses colors, beside the map that follows.

#include "viewer/colors/ColorsWindow.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include "apps/viewer/ViewerDocksFixture.h"
#include "viewer/colors/LegendView.h"
#include "viewer/colors/NumberBox.h"

namespace vlclientui::test {
namespace {

class ColorsWindow : public ViewerDocksFixture {
 protected:
  [[nodiscard]] viewer::ColorsWindow& colors() const {
    return *window_->findChild<viewer::ColorsWindow*>("ColorsWindow");
  }
  template <class Kind>
  [[nodiscard]] Kind& part(const char* name) const {
    return *colors().findChild<Kind*>(QLatin1String(name));
  }
  void openColors() {
    action("ShowColors").trigger();
    seeRead();
  }
  void seeRead() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return colors().draft().has_value(); }, 30'000));
  }
  void settle() {
    QTest::qWait(200);
    seeDrawn();
  }
  void choose(const char* list, int data) {
    auto& box = part<QComboBox>(list);
    box.setCurrentIndex(box.findData(data));
    emit box.activated(box.currentIndex());
  }
  [[nodiscard]] const std::string& kept() const { return window_->services().rows()[0].shown.stretch; }
};

TEST_F(ColorsWindow, TheMapFollowsAtOnceAndTheListKeepsIt) {
  pickOverlaps();
  openColors();
  EXPECT_EQ(imageColor(), blue);
  EXPECT_TRUE(colors().windowTitle().contains(window_->services().rows()[0].name()));
  // Red and blue change places.
  choose("Band1", 3);
  choose("Band3", 1);
  settle();
  EXPECT_EQ(imageColor(), QColor(blue.blue(), blue.green(), blue.red()));
  EXPECT_NE(kept(), "");
  keepPicture(*window_, "colors-map");
  keepPicture(colors(), "colors-window");
}

TEST_F(ColorsWindow, ValuesBetweenTheLowestAndTheHighestGetAllShades) {
  pickOverlaps();
  openColors();
  part<viewer::NumberBox>("Lowest3").setValue(blue.blue());
  part<viewer::NumberBox>("Highest3").setValue(blue.blue() + 10);
  settle();
  EXPECT_EQ(imageColor().blue(), 0);
  EXPECT_EQ(imageColor().red(), blue.red());
}

TEST_F(ColorsWindow, ResetBringsBackWhatTheServiceDecides) {
  pickOverlaps();
  openColors();
  EXPECT_FALSE(part<QPushButton>("ResetColors").isEnabled());
  choose("Coloring", static_cast<int>(client::Coloring::Ramp));
  settle();
  EXPECT_NE(imageColor(), blue);
  part<QPushButton>("ResetColors").click();
  settle();
  EXPECT_EQ(imageColor(), blue);
  EXPECT_EQ(kept(), "");
}

TEST_F(ColorsWindow, TheButtonsSetTheSpan) {
  pickSample("World/EGM96_Geoid");
  seeDrawn();
  openColors();
  const double usual = part<viewer::NumberBox>("Highest1").value();
  part<QPushButton>("WholeSpan").click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return part<viewer::NumberBox>("Highest1").value() > usual; }, 30'000));
  ASSERT_TRUE(QTest::qWaitFor([&] { return kept() == colors().draft()->text(); }, 30'000));
  EXPECT_NEAR(client::stretchOf(kept())->highest[0], part<viewer::NumberBox>("Highest1").value(), 1e-6);
}

TEST_F(ColorsWindow, ShadesHeightsAsLightAlone) {
  pickSample("World/EGM96_Geoid");
  window_->zoomToService();
  openColors();
  choose("Coloring", static_cast<int>(client::Coloring::Shading));
  part<viewer::NumberBox>("Exaggeration").setValue(500);
  settle();
  const QImage image = map().picture(window_->services().rows()[0].reference);
  const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
  EXPECT_EQ(middle.red(), middle.green());
  EXPECT_EQ(middle.red(), middle.blue());
  EXPECT_EQ(middle.alpha(), 255);
  keepPicture(*window_, "colors-shading");
  keepPicture(colors(), "colors-shading-window");
}

TEST_F(ColorsWindow, FollowsWhatIsPickedAndEachServiceKeepsItsOwn) {
  pickOverlaps();
  openColors();
  choose("Coloring", static_cast<int>(client::Coloring::Ramp));
  settle();
  pickSample("World/EGM96_Geoid");
  seeRead();
  EXPECT_TRUE(colors().windowTitle().contains(window_->services().rows()[0].name()));
  EXPECT_EQ(kept(), "");
  EXPECT_NE(window_->services().rows()[1].shown.stretch, "");
}

TEST_F(ColorsWindow, WhatWasChosenIsPartOfTheProject) {
  pickOverlaps();
  openColors();
  choose("Coloring", static_cast<int>(client::Coloring::Shading));
  settle();
  const auto services = window_->services().services();
  EXPECT_EQ(services[0].state.stretch, client::stretchText(colors().draft()->stretch()));
  EXPECT_NE(services[0].state.stretch.find("coloring=shading"), std::string::npos);
}

TEST_F(ColorsWindow, TellsThatNoServiceIsPicked) {
  pickOverlaps();
  openColors();
  window_->removeService();
  EXPECT_FALSE(colors().draft());
  EXPECT_TRUE(part<QLabel>("ColorsState").text().contains("Pick a service"));
  EXPECT_FALSE(part<QComboBox>("Coloring").isEnabled());
}

TEST_F(ColorsWindow, TheActionIsThereForAPickedServiceAlone) {
  EXPECT_FALSE(action("ShowColors").isEnabled());
  pickOverlaps();
  EXPECT_TRUE(action("ShowColors").isEnabled());
}

TEST_F(ColorsWindow, TheLegendOnTheMapTellsTheSame) {
  pickOverlaps();
  auto& legend = *map().findChild<viewer::LegendView*>("Legend");
  EXPECT_TRUE(legend.isVisible());
  EXPECT_EQ(legend.lines().size(), 3U);
  EXPECT_TRUE(QTest::qWaitFor([&] { return legend.lines()[1].text == "Green"; }, 30'000))
      << "the bands have names";
  keepPicture(map(), "legend-bands");
  openColors();
  choose("Coloring", static_cast<int>(client::Coloring::Ramp));
  settle();
  EXPECT_EQ(legend.lines().size(), 1U);
  action("ShowLegend").trigger();
  EXPECT_FALSE(legend.isVisible());
}

TEST_F(ColorsWindow, TheLegendListsTheClassesOfAPalette) {
  const auto classes = file("classes.vrt");
  std::ofstream(classes) << R"(<VRTDataset rasterXSize="20" rasterYSize="20"><SRS>EPSG:4326</SRS>
<GeoTransform>7, 0.1, 0, 48, 0, -0.1</GeoTransform><VRTRasterBand dataType="Byte" band="1">
<ColorInterp>Palette</ColorInterp><ColorTable><Entry c1="20" c2="40" c3="200" c4="255"/>
<Entry c1="30" c2="120" c3="40" c4="255"/></ColorTable>
<GDALRasterAttributeTable><FieldDefn index="0"><Name>Value</Name><Type>0</Type><Usage>5</Usage></FieldDefn>
<FieldDefn index="1"><Name>Kind</Name><Type>2</Type><Usage>0</Usage></FieldDefn>
<Row index="0"><F>0</F><F>Lake</F></Row><Row index="1"><F>1</F><F>Forest</F></Row>
</GDALRasterAttributeTable></VRTRasterBand></VRTDataset>)";
  window_->openFile(classes);
  auto& legend = *map().findChild<viewer::LegendView*>("Legend");
  ASSERT_TRUE(QTest::qWaitFor([&] { return legend.lines().size() == 2; }, 30'000));
  EXPECT_EQ(legend.lines()[0].text, "Lake");
  EXPECT_EQ(legend.lines()[1].text, "Forest");
  EXPECT_EQ(legend.lines()[1].colors.pixelColor(0, 0), QColor(30, 120, 40));
  window_->zoomToService();
  seeDrawn();
  keepPicture(*window_, "legend-classes");
}

}  // namespace
}  // namespace vlclientui::test
