#include "client/connections/PrivateFile.h"

#include <sstream>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "support/LeftOver.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Text = std::optional<std::string>;

class PrivateFileTest : public testing::Test {
 protected:
  [[nodiscard]] PrivateFile file() const { return PrivateFile(folder_.path() / "own" / "small.json"); }
  static PrivateFile::Edit writing(const std::string& text) {
    return [text](const Text&) { return text; };
  }

 private:
  test::TemporaryFolder folder_;
};

TEST_F(PrivateFileTest, HoldsNothingBeforeItIsWritten) {
  EXPECT_EQ(file().read(), std::nullopt);
  EXPECT_EQ(file().stamp(), PrivateFile::Stamp());
  EXPECT_FALSE(fs::exists(file().path().parent_path()));
}

TEST_F(PrivateFileTest, GivesTheEditWhatIsThere) {
  std::vector<Text> seen;
  for (const char* const text : {"one", "two"}) {
    file().change([&](const Text& before) {
      seen.push_back(before);
      return std::string(text);
    });
  }
  EXPECT_EQ(seen, (std::vector<Text>{std::nullopt, "one"}));
  EXPECT_EQ(file().read(), "two");
}

TEST_F(PrivateFileTest, StaysAsItWasWhereTheEditFails) {
  file().change(writing("one"));
  const auto stamp = file().stamp();
  EXPECT_THROW(file().change([](const Text&) -> std::string { throw RuntimeFailure("no"); }), RuntimeFailure);
  EXPECT_EQ(file().read(), "one");
  EXPECT_EQ(file().stamp(), stamp);
}

TEST_F(PrivateFileTest, IsNotWrittenWhereNothingChanges) {
  file().change(writing("one"));
  const auto stamp = file().stamp();
  file().change(writing("one"));
  EXPECT_EQ(file().stamp(), stamp);
  file().change(writing("two"));
  EXPECT_NE(file().stamp(), stamp);
}

TEST_F(PrivateFileTest, TakesNoNoticeOfWhatAKilledWriterLeft) {
  file().change(writing("one"));
  const fs::path half = test::leaveHalf(file().path(), std::to_string(test::deadProcess()));
  file().change(writing("two"));
  EXPECT_EQ(file().read(), "two");
  EXPECT_FALSE(fs::exists(half));
}

TEST_F(PrivateFileTest, IsChangedByOneThreadAtATime) {
  constexpr int threads = 4;
  constexpr int each = 25;
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) {
    running.emplace_back([this] {
      for (int j = 0; j < each; ++j)
        file().change([](const Text& before) { return before.value_or("") + "x"; });
    });
  }
  for (std::thread& thread : running) thread.join();
  EXPECT_EQ(file().read()->size(), static_cast<std::size_t>(threads * each));
}

TEST_F(PrivateFileTest, IsReadWholeWhileItIsReplaced) {
  const std::string one(200'000, 'a');
  const std::string two(100'000, 'b');
  file().change(writing(one));
  std::thread writer([&] {
    for (int i = 0; i < 20; ++i) file().change(writing(i % 2 == 0 ? two : one));
  });
  for (int i = 0; i < 100; ++i) {
    const auto seen = file().read();
    EXPECT_TRUE(seen == one || seen == two);
  }
  writer.join();
}

}  // namespace
}  // namespace vlclientui::client
