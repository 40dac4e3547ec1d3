#include "viewer/list/ServiceListModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "apps/viewer/ViewerFixture.h"

namespace vlclientui::test {
namespace {

using viewer::ServiceListModel;
using viewer::ServiceState;

class ListOfServices : public ViewerFixture {
 protected:
  ListOfServices() { model_.add({"d", "c", "b", "a"}); }

  [[nodiscard]] std::string order() const {
    std::string all;
    for (const auto& row : model_.rows()) all += row.reference.toStdString();
    return all;
  }
  [[nodiscard]] const ServiceState& shown(int row) const {
    return model_.rows()[static_cast<std::size_t>(row)].shown;
  }

  ServiceListModel model_{host_};
  QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ListOfServices, LaysWhatIsAddedOnTopOnceEach) {
  EXPECT_EQ(order(), "abcd");
  EXPECT_EQ(model_.add({"b", "e"}), 1);
  EXPECT_EQ(order(), "eabcd");
  model_.addBelow({"f", {}});
  model_.addBelow({"a", {}});
  EXPECT_EQ(order(), "eabcdf");
}

TEST_F(ListOfServices, MovesSeveralTogetherInTheirOrder) {
  EXPECT_EQ(model_.move({3, 1}, 0), 0);
  EXPECT_EQ(order(), "bdac");
  EXPECT_EQ(model_.move({0, 2}, 4), 2);
  EXPECT_EQ(order(), "dcba");
  EXPECT_EQ(model_.move({0, 3}, 2), 1);
  EXPECT_EQ(order(), "cdab");
  EXPECT_EQ(model_.move({1, 2}, 2), 1);
  EXPECT_EQ(order(), "cdab") << "they stand there already";
}

TEST_F(ListOfServices, RemovesSeveralAtATime) {
  model_.remove({0, 2});
  EXPECT_EQ(order(), "bd");
  model_.clear();
  EXPECT_EQ(model_.rowCount(), 0);
}

TEST_F(ListOfServices, KeepsTheStateOfAServiceWhereverItMoves) {
  model_.setVisible(1, false);
  model_.setOpacity(1, 0.4);
  model_.rename(1, "  My \n name ");
  model_.keepProperties(1, "<a/>");
  model_.keepStretch(1, "bands=1");
  model_.move({1}, 4);
  const ServiceState expected{"My name", false, 0.4, "<a/>", "bands=1"};
  EXPECT_EQ(shown(3), expected);
  EXPECT_EQ(model_.services()[3], (viewer::ProjectService{"b", expected}));
  EXPECT_EQ(model_.index(3).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
  EXPECT_EQ(model_.index(3).data(Qt::EditRole).toString(), "My name");
  model_.rename(3, "");
  EXPECT_EQ(model_.rows()[3].name(), "b");
}

TEST_F(ListOfServices, TellsOfEachChangeThatAProjectKeeps) {
  const QSignalSpy changes(&model_, &ServiceListModel::changed);
  model_.setVisible(0, true);
  model_.setOpacity(0, 1);
  EXPECT_EQ(changes.count(), 0) << "nothing is other than before";
  EXPECT_TRUE(model_.setData(model_.index(0), Qt::Unchecked, Qt::CheckStateRole));
  EXPECT_TRUE(model_.setData(model_.index(0), "Name", Qt::EditRole));
  EXPECT_FALSE(model_.setData(model_.index(0), "Name", Qt::ToolTipRole));
  EXPECT_EQ(changes.count(), 2);
  model_.move({0}, 2);
  EXPECT_EQ(changes.count(), 3);
}

TEST_F(ListOfServices, TellsWhyAServiceCannotBeRead) {
  model_.add({"ImageService://127.0.0.1/Nothing"});
  ASSERT_TRUE(QTest::qWaitFor([this] { return !model_.isLoading(); }, 30'000));
  EXPECT_TRUE(model_.index(0).data().toString().endsWith("cannot be read"));
  EXPECT_TRUE(model_.index(0).data(Qt::ToolTipRole).toString().contains("There is no image service"));
}

TEST_F(ListOfServices, DrawsWhatWasAppliedWhileAServiceWasBeingReadAlsoAfterwards) {
  const QString reference = "ImageService://127.0.0.1/World/EGM96_Geoid";
  viewer::PickedService service(host_, reference.toStdString(), "Geoid");
  const auto applied = service.presentDrawing();
  model_.add({reference.toStdString()});
  model_.draw(reference, applied);
  const auto wanted = model_.rows()[0].service.drawing;
  ASSERT_TRUE(QTest::qWaitFor([this] { return !model_.isLoading(); }, 30'000));
  EXPECT_EQ(model_.rows()[0].service.drawing, wanted);
  EXPECT_TRUE(model_.rows()[0].service.title.startsWith("EGM96")) << "the rest was read";
}

TEST_F(ListOfServices, ShowsASmallPictureOfWhatWasApplied) {
  const QString reference = "ImageService://127.0.0.1/Imagery/Overlap_Study";
  model_.add({reference.toStdString()});
  ASSERT_TRUE(QTest::qWaitFor([this] { return !model_.isLoading(); }, 30'000));
  const QImage before = model_.rows()[0].service.picture;
  viewer::PickedService service(host_, reference.toStdString(), "Overlaps");
  service.follow(
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"
      "</ImageServiceProperties></Vorlane>");
  model_.draw(reference, service.presentDrawing());
  EXPECT_EQ(model_.rows()[0].service.picture, before) << "the former one stays until there is another";
  EXPECT_EQ(model_.rows()[0].state, ServiceListModel::State::Ready);
  ASSERT_TRUE(QTest::qWaitFor([&] { return model_.rows()[0].service.picture != before; }, 30'000));
  EXPECT_NE(model_.rows()[0].service.picture.pixel(256, 256), before.pixel(256, 256));
}

TEST_F(ListOfServices, MakesTheIconOfAServiceOnce) {
  model_.add({"ImageService://127.0.0.1/World/EGM96_Geoid"});
  ASSERT_TRUE(QTest::qWaitFor([this] { return !model_.isLoading(); }, 30'000));
  const auto key = [this] { return model_.index(0).data(Qt::DecorationRole).value<QIcon>().cacheKey(); };
  EXPECT_EQ(key(), key());
  EXPECT_FALSE(model_.index(0).data(Qt::DecorationRole).value<QIcon>().isNull());
}

}  // namespace
}  // namespace vlclientui::test
