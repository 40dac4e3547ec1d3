#include "viewer/tools/ViewHistory.h"

#include <gtest/gtest.h>

namespace vlclientui::test {
namespace {

viewer::MapFrame viewAt(double x, const char* code = client::degreesCode) {
  viewer::MapFrame frame;
  frame.resize({100, 100});
  frame.place({x, 0}, 0.5);
  frame.setSystem(*client::mapSystemOf(code));
  return frame;
}

TEST(ViewHistory, GoesBackAndOnAgain) {
  viewer::ViewHistory history;
  EXPECT_FALSE(history.hasPrevious() || history.hasNext());
  for (const double x : {1, 2, 3}) history.note(viewAt(x));
  EXPECT_EQ(history.previous().middle().x, 2);
  EXPECT_EQ(history.previous().middle().x, 1);
  EXPECT_FALSE(history.hasPrevious());
  EXPECT_EQ(history.next().middle().x, 2);
  EXPECT_TRUE(history.hasNext());
}

TEST(ViewHistory, ForgetsWhatComesAfterANewView) {
  viewer::ViewHistory history;
  for (const double x : {1, 2, 3}) history.note(viewAt(x));
  history.previous();
  history.note(viewAt(4));
  EXPECT_FALSE(history.hasNext());
  EXPECT_EQ(history.previous().middle().x, 2);
}

TEST(ViewHistory, CountsAViewThatStaysTheSameOnce) {
  viewer::ViewHistory history;
  history.note(viewAt(1));
  history.note(viewAt(1));
  EXPECT_FALSE(history.hasPrevious());
}

TEST(ViewHistory, CountsAChangeOfTheSystemAsTheSameView) {
  viewer::ViewHistory history;
  history.note(viewAt(1));
  history.note(viewAt(2));
  history.note(viewAt(2, "EPSG:3857"));
  EXPECT_EQ(history.previous().middle().x, 1);
  EXPECT_FALSE(history.hasPrevious());
}

TEST(ViewHistory, KeepsTheLastOnesOnly) {
  viewer::ViewHistory history;
  for (int i = 0; i < 150; ++i) history.note(viewAt(i));
  int count = 0;
  while (history.hasPrevious()) {
    history.previous();
    ++count;
  }
  EXPECT_EQ(count, viewer::ViewHistory::most - 1);
}

}  // namespace
}  // namespace vlclientui::test
