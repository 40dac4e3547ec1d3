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
  openColors();
  choose("Coloring", static_cast<int>(client::Coloring::Ramp));
  settle();
  EXPECT_EQ(legend.lines().size(), 1U);
  action("ShowLegend").trigger();
  EXPECT_FALSE(legend.isVisible());
}

}  // namespace
}  // namespace vlclientui::test
