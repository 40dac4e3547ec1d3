#include "client/facade/MosaicReading.h"

#include <algorithm>
#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "client/facade/ServiceDrawing.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Names = std::vector<std::string>;

RasterFacts factsAt(double x) {
  RasterFacts facts;
  facts.title = "t";
  facts.pixelType = "Byte";
  facts.bandCount = facts.colorBands = 1;
  facts.columns = facts.rows = facts.fileColumns = facts.fileRows = 10;
  facts.pixelSize = facts.pixelHeight = 1;
  facts.envelope = {x, 0, x + 10, 10};
  return facts;
}

ToldRaster toldAt(double x) {
  ToldRaster told;
  told.transform = GeoTransform{x, 1, 0, 10, 0, -1};
  told.columns = told.rows = 10;
  return told;
}

/// Rasters in a row, 10 units wide, the first at 0; `missing` ones cannot be read.
class MosaicReadings : public testing::Test {
 protected:
  explicit MosaicReadings(std::string system = {}) : system_(std::move(system)) {}

  [[nodiscard]] static MosaicSource source(int number) {
    const std::string name = "r" + std::to_string(number);
    return {name, name, {}, name, toldAt(number * 10.0)};
  }
  [[nodiscard]] MosaicReading reading(int count, std::shared_ptr<MosaicOrigin> origin = nullptr) {
    CatalogueEntry entry{EntryKind::Mosaic, {}, "m", {}};
    for (int i = 0; i < count; ++i) entry.definition.sources.push_back(source(i));
    entry.origin = std::move(origin);
    return {std::move(entry), [this](const auto& files) { return read(files); }};
  }
  std::vector<RasterResult> read(const std::vector<std::filesystem::path>& files) {
    std::vector<RasterResult> results;
    for (const auto& file : files) {
      const std::string name = file.string();
      opened_.push_back(name);
      const bool isThere = std::ranges::find(missing_, name) == missing_.end();
      if (isThere) results.emplace_back(withSystem(factsAt(std::stod(name.substr(1)) * 10)));
      if (!isThere) results.emplace_back(RasterProblem{true, "it is gone"});
    }
    return results;
  }
  static MosaicReading::RecordPtr opened(MosaicReading& mosaic, const MosaicReading::RecordPtr& service,
                                         const Bounds& area, MosaicReading::Opening opening) {
    return mosaic.openedWithin(service, drawingOf(*service, {}), area, opening);
  }
  static MosaicReading::RecordPtr first(MosaicReading& mosaic) {
    ImageServiceRecord service;
    service.kind = ServiceKind::Mosaic;
    return std::make_shared<const ImageServiceRecord>(mosaic.read(std::move(service), {}));
  }

  [[nodiscard]] RasterFacts withSystem(RasterFacts facts) const {
    facts.srsWkt = system_;
    return facts;
  }

  Names opened_;
  Names missing_;
  std::string system_;  ///< of all; empty for none
};

TEST_F(MosaicReadings, OpenOneSampleAndTakeTheRestAsTold) {
  // Places without a system count as not told exactly, and so few are opened for that.
  MosaicReading mosaic = reading(100);
  const auto service = first(mosaic);
  EXPECT_EQ(opened_, Names{"r0"});
  ASSERT_EQ(service->sources.size(), 100U);
  EXPECT_EQ(service->facts.envelope, (Bounds{0, 0, 1000, 10}));
  EXPECT_EQ(service->sources[0].factsFrom, FactsFrom::File);
  EXPECT_EQ(service->sources[99].factsFrom, FactsFrom::Catalogue);
}

TEST_F(MosaicReadings, OpenAllOfAFewThatDoNotTellTheirPlaceExactly) {
  MosaicReading mosaic = reading(20);
  EXPECT_EQ(first(mosaic)->sources[19].factsFrom, FactsFrom::File);
  EXPECT_EQ(opened_.size(), 20U);
}

TEST_F(MosaicReadings, TryAnotherSampleAndTellWhatCannotBeRead) {
  missing_ = {"r0", "r1"};
  MosaicReading mosaic = reading(100);
  const auto service = first(mosaic);
  EXPECT_EQ(opened_, (Names{"r0", "r1", "r2"}));
  EXPECT_EQ(service->sources.size(), 98U);
  ASSERT_EQ(service->problems.size(), 2U);
  EXPECT_EQ(service->problems[0], (LeftOut{"r0", "it is gone"}));
}

TEST_F(MosaicReadings, GiveUpAfterAFewSamplesThatCannotBeRead) {
  for (int i = 0; i < 100; ++i) missing_.push_back("r" + std::to_string(i));
  MosaicReading mosaic = reading(100);
  try {
    first(mosaic);
    FAIL() << "a mosaic without rasters is none";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("it is gone"), std::string::npos) << failure.description();
  }
  EXPECT_EQ(opened_.size(), 5U);
}

TEST_F(MosaicReadings, OpenEachSourceOnceWhenAnAreaShowsIt) {
  MosaicReading mosaic = reading(100);
  auto service = first(mosaic);
  const Bounds area{495, 2, 515, 8};
  const auto changed = opened(mosaic, service, area, MosaicReading::Opening::All);
  EXPECT_EQ(opened_, (Names{"r0", "r51", "r50", "r49"}));
  EXPECT_EQ(changed->sources[50].factsFrom, FactsFrom::File);
  EXPECT_EQ(changed->facts.envelope, service->facts.envelope);
  EXPECT_EQ(opened(mosaic, changed, area, MosaicReading::Opening::All), changed) << "nothing has changed";
  EXPECT_EQ(opened_.size(), 4U);
}

TEST_F(MosaicReadings, KnowWhatWasOpenedElsewhere) {
  MosaicReading mosaic = reading(100);
  const auto service = first(mosaic);
  const Bounds area{495, 2, 499, 8};
  EXPECT_EQ(opened(mosaic, service, area, MosaicReading::Opening::Done), service);
  EXPECT_NE(opened(mosaic, service, area, MosaicReading::Opening::All), service);
  EXPECT_EQ(opened(mosaic, service, area, MosaicReading::Opening::Done)->sources[49].factsFrom,
            FactsFrom::File)
      << "the record of another thread learns of it";
  EXPECT_EQ(opened_, (Names{"r0", "r49"}));
}

TEST_F(MosaicReadings, LeaveOutWhatAnAreaCannotShow) {
  missing_ = {"r49"};
  MosaicReading mosaic = reading(100);
  const auto changed = opened(mosaic, first(mosaic), {485, 2, 505, 8}, MosaicReading::Opening::All);
  EXPECT_EQ(changed->sources.size(), 99U);
  ASSERT_EQ(changed->problems.size(), 1U);
  EXPECT_EQ(changed->problems[0], (LeftOut{"r49", "it is gone"}));
}

TEST_F(MosaicReadings, OfVeryManyOpenThoseOnTopForADrawingAndAllForAnExport) {
  constexpr int count = 700;
  MosaicReading mosaic = reading(count);
  const auto service = first(mosaic);
  const Bounds whole = service->facts.envelope;
  const auto drawn = opened(mosaic, service, whole, MosaicReading::Opening::Topmost);
  EXPECT_EQ(opened_.size(), 1 + MosaicReading::mostForDrawing);
  EXPECT_EQ(drawn->sources[count - 1].factsFrom, FactsFrom::File);
  EXPECT_EQ(drawn->sources[100].factsFrom, FactsFrom::Catalogue);
  const auto drawing = std::make_shared<const Drawing>(drawingOf(*drawn, {}));
  const auto shown = withoutUnopened(drawing, whole);
  EXPECT_EQ(shown->order.size(), 1 + MosaicReading::mostForDrawing);
  ASSERT_EQ(shown->remarks.size(), 1U);
  EXPECT_NE(shown->remarks[0].find("199 more lie in it"), std::string::npos) << shown->remarks[0];
  const auto exported = opened(mosaic, drawn, whole, MosaicReading::Opening::All);
  EXPECT_EQ(opened_.size(), static_cast<std::size_t>(count));
  const auto all = std::make_shared<const Drawing>(drawingOf(*exported, {}));
  EXPECT_EQ(withoutUnopened(all, whole), all);
}

TEST_F(MosaicReadings, OfVeryManyGiveAllToWhoComputesWithTheirPixels) {
  constexpr std::size_t count = MosaicReading::mostForDrawing + 200;
  const std::shared_ptr<MosaicReading> mosaic(new MosaicReading(reading(static_cast<int>(count))));
  const auto service = first(*mosaic);
  const ServiceDrawing drawing(std::make_shared<const Drawing>(drawingOf(*service, {})), service, mosaic);
  const Bounds whole = service->facts.envelope;
  EXPECT_LT(drawing.within(whole)->order.size(), count) << "a map has those on top";
  const auto all = drawing.wholeWithin(whole);
  EXPECT_EQ(all->order.size(), count);
  EXPECT_EQ(withoutUnopened(all, whole), all) << "and each was opened";
  EXPECT_TRUE(all->remarks.empty());
}

/// Holds 101 sources, and one more once it was asked for an area.
class GrowingOrigin : public MosaicOrigin {
 public:
  [[nodiscard]] Names choices() const override { return {"visual", "red"}; }
  [[nodiscard]] std::variant<MosaicDefinition, std::string> definition(const std::string& choice) override {
    if (choice == "broken") return std::string("the server is gone");
    MosaicDefinition made;
    made.title = choice;
    for (int i = 0; i < (hasLearnt_ ? 102 : 101); ++i) {
      const std::string name = "r" + std::to_string(i);
      made.sources.push_back({name, name, {}, name, toldAt(i * 10.0)});
    }
    return made;
  }
  [[nodiscard]] bool learn(const Bounds& /*geographic*/) override { return !std::exchange(hasLearnt_, true); }

 private:
  bool hasLearnt_ = false;
};

/// Tells of the sources that a test says, and learns as it says.
class ToldOrigin : public MosaicOrigin {
 public:
  [[nodiscard]] Names choices() const override { return {}; }
  [[nodiscard]] std::variant<MosaicDefinition, std::string> definition(
      const std::string& /*choice*/) override {
    MosaicDefinition made;
    for (const int number : numbers) {
      const std::string name = "r" + std::to_string(number);
      made.sources.push_back({name, name, {}, name, toldAt(number * 10.0)});
    }
    return made;
  }
  [[nodiscard]] bool learn(const Bounds& geographic) override {
    asked.push_back(geographic);
    return onLearn();
  }

  std::vector<int> numbers = {0, 1, 2};
  std::function<bool()> onLearn = [] { return false; };
  std::vector<Bounds> asked;
};

constexpr auto degrees =
    "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
    "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";

class LearningMosaics : public MosaicReadings {
 protected:
  LearningMosaics() : MosaicReadings(degrees) {}
  MosaicReading::RecordPtr openedIn(const Bounds& area, MosaicReading::Opening opening) {
    return opened(mosaic_, service_, area, opening);
  }

  const std::shared_ptr<ToldOrigin> origin_ = std::make_shared<ToldOrigin>();
  MosaicReading mosaic_ = reading(3, origin_);
  const MosaicReading::RecordPtr service_ = first(mosaic_);
  const Bounds area_{32, 2, 38, 8};
};

TEST_F(LearningMosaics, AskForWhatLiesInAnAreaAndOpenIt) {
  origin_->onLearn = [this] {
    origin_->numbers = {0, 1, 2, 3};
    return true;
  };
  const auto learnt = openedIn(area_, MosaicReading::Opening::All);
  ASSERT_EQ(origin_->asked.size(), 1U);
  EXPECT_NEAR(origin_->asked[0].xMin, 32, 1e-6);
  EXPECT_NEAR(origin_->asked[0].yMax, 8, 1e-6);
  EXPECT_EQ(learnt->sources.size(), 4U);
  EXPECT_EQ(learnt->facts.envelope, (Bounds{0, 0, 40, 10}));
  EXPECT_EQ(opened_.back(), "r3");
}

TEST_F(LearningMosaics, StayTheSameWhereNothingIsNew) {
  EXPECT_EQ(openedIn(area_, MosaicReading::Opening::Topmost), service_);
  EXPECT_EQ(origin_->asked.size(), 1U);
  EXPECT_EQ(openedIn(area_, MosaicReading::Opening::Done), service_);
  EXPECT_EQ(origin_->asked.size(), 1U) << "who wants only what was opened asks nobody";
}

TEST_F(LearningMosaics, FailWithTheServerAndLearnOnceItIsBack) {
  origin_->onLearn = []() -> bool { throw RuntimeFailure("The catalogue does not answer"); };
  EXPECT_THROW(static_cast<void>(openedIn(area_, MosaicReading::Opening::All)), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(openedIn(area_, MosaicReading::Opening::Topmost)), RuntimeFailure);
  EXPECT_EQ(openedIn(area_, MosaicReading::Opening::Done), service_);
  origin_->onLearn = [this] {
    origin_->numbers.push_back(3);
    return true;
  };
  EXPECT_EQ(openedIn(area_, MosaicReading::Opening::All)->sources.size(), 4U);
}

TEST_F(LearningMosaics, LeaveNoHoleWhereTheLearningIsGivenUp) {
  CancelToken token;
  origin_->onLearn = [&] {
    token.cancel();
    return false;
  };
  const WaitScope scope(nullptr, token);
  EXPECT_THROW(static_cast<void>(openedIn(area_, MosaicReading::Opening::All)), RuntimeFailure);
}

// As where another image of each item is shown, or an item went and another one came.
TEST_F(LearningMosaics, OpenByTheOrderThatTheyLearntAlsoWhereAsManySourcesAreLeft) {
  origin_->numbers = {2, 3};
  for (int number = 10; number < 100; ++number) origin_->numbers.push_back(number);
  origin_->onLearn = [this] {
    std::ranges::reverse(origin_->numbers);
    origin_->numbers.pop_back();
    origin_->numbers.push_back(4);
    return true;
  };
  opened_.clear();
  const auto learnt = openedIn({32, 2, 48, 8}, MosaicReading::Opening::All);
  EXPECT_EQ(opened_, (Names{"r99", "r4", "r3"}));
  EXPECT_EQ(learnt->sources.back().rasterId, "r4");
}

TEST_F(MosaicReadings, AskTheirOriginForAnotherChoice) {
  const auto origin = std::make_shared<GrowingOrigin>();
  MosaicReading mosaic = reading(101, origin);
  const auto service = first(mosaic);
  EXPECT_EQ(service->choices, (Names{"visual", "red"}));
  EXPECT_EQ(mosaic.read(*service, "red").facts.title, "red");
  EXPECT_THROW(static_cast<void>(mosaic.read(*service, "broken")), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
