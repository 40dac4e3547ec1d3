#include <array>
#include <cerrno>
#include <cstring>
#include <set>

#include <gtest/gtest.h>

#include "apps/saving/SavingFixture.h"
#include "client/ChildProcess.h"
#include "contracts/RuntimeFailure.h"
#include "support/FailingDisk.h"

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

using State = test::Saver::State;

class FailingDisks : public test::SavingFixture, public testing::WithParamInterface<test::Saver> {
 protected:
  [[nodiscard]] std::string content() const { return test::contentOf((home() / GetParam().file).string()); }

  [[nodiscard]] std::set<fs::path> names() const {
    std::set<fs::path> all;
    for (const auto& entry : fs::recursive_directory_iterator(home())) all.insert(entry.path());
    return all;
  }

  /// What is said where saving fails in a process of its own. @param before run there first.
  [[nodiscard]] std::string said(const std::function<void()>& before, State state) const {
    return test::inChild([&]() -> std::string {
             before();
             try {
               return GetParam().save(home(), state);
             } catch (const RuntimeFailure& failure) {
               return failure.description();
             }
           })
        .text;
  }
};

INSTANTIATE_TEST_SUITE_P(Saving, FailingDisks, testing::ValuesIn(test::savers()),
                         [](const auto& one) { return one.param.name; });

TEST_P(FailingDisks, LoseNothingAndAreToldInWords) {
  EXPECT_EQ(said([] {}, State::First), "");
  const std::string before = content();
  const std::set<fs::path> expected = names();
  for (const int error : {ENOSPC, EDQUOT, EIO, EROFS}) {
    const std::string words = said([&] { vlFailUnder(home().c_str(), error, 10); }, State::Second);
    EXPECT_TRUE(test::holds(words, std::strerror(error))) << words;
    EXPECT_TRUE(test::holds(words, home().string())) << words;
    EXPECT_EQ(content(), before);
    EXPECT_EQ(names(), expected) << std::strerror(error);
  }
}

TEST_P(FailingDisks, ThatLoseTheirFolderAreToldOrMakeItAgain) {
  const std::string words = said([this] { fs::remove_all(home()); }, State::First);
  const bool isThere = fs::exists(home() / GetParam().file);
  EXPECT_EQ(words.empty(), isThere) << words;
  if (!isThere) {
    EXPECT_TRUE(test::holds(words, home().string())) << words;
  }
}

}  // namespace
}  // namespace vlclientui
