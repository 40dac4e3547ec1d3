#include "contracts/NewFile.h"

#include <cerrno>
#include <fstream>
#include <set>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "contracts/Utf8.h"
#include "support/FailingDisk.h"
#include "support/LeftOver.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

class NewFiles : public testing::Test {
 protected:
  NewFiles() { std::ofstream(target_) << "former"; }

  [[nodiscard]] std::string content() const {
    std::ifstream stream(target_);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> all;
    for (const auto& entry : fs::directory_iterator(folder_.path())) all.insert(entry.path().filename());
    return all;
  }

  test::TemporaryFolder folder_;
  fs::path target_ = folder_.path() / "f";
};

TEST_F(NewFiles, HaveNoNameUntilTheyTakeThePlaceOfTheFormer) {
  NewFile file(target_);
  ASSERT_TRUE(file.isOpen());
  EXPECT_TRUE(file.write("new") && file.write("er"));
  EXPECT_EQ(content(), "former");
  EXPECT_EQ(names(), (std::set<std::string>{"f"}));
  EXPECT_TRUE(file.takePlace());
  EXPECT_EQ(content(), "newer");
  EXPECT_EQ(names(), (std::set<std::string>{"f"}));
}

TEST_F(NewFiles, ThatTakeNoPlaceLeaveNothing) {
  { EXPECT_TRUE(NewFile(target_).write("new")); }
  EXPECT_EQ(content(), "former");
  fs::create_directory(folder_.path() / "d");
  {
    NewFile file(folder_.path() / "d");
    EXPECT_FALSE(file.takePlace());
    EXPECT_EQ(errno, EISDIR);
  }
  EXPECT_EQ(names(), (std::set<std::string>{"d", "f"}));
}

TEST_F(NewFiles, SayWhyTheyCannotBeMade) {
  const NewFile file(folder_.path() / "missing" / "f");
  EXPECT_FALSE(file.isOpen());
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(NewFiles, HaveTheRightsThatAreAskedFor) {
  NewFile file(target_, 0600);
  EXPECT_TRUE(file.takePlace());
  EXPECT_EQ(fs::status(target_).permissions(), fs::perms(0600));
  NewFile other(target_);
  EXPECT_TRUE(other.setRights(fs::perms(0640)) && other.takePlace());
  EXPECT_EQ(fs::status(target_).permissions(), fs::perms(0640));
}

TEST_F(NewFiles, RemoveWhatKilledProcessesLeft) {
  const fs::path ofDead = test::leaveHalf(target_, std::to_string(test::deadProcess()));
  const fs::path ofLiving = test::leaveHalf(target_, std::to_string(getpid()));
  const fs::path ofAnotherFile = test::leaveHalf(folder_.path() / "g", std::to_string(test::deadProcess()));
  { const NewFile file(target_); }
  EXPECT_FALSE(fs::exists(ofDead));
  EXPECT_TRUE(fs::exists(ofLiving)) << "another one may be writing it";
  EXPECT_TRUE(fs::exists(ofAnotherFile));
}

// Another container may have a process of that number, which nobody bears here.
TEST_F(NewFiles, LeaveWhatSomebodyHolds) {
  const fs::path held = test::leaveHalf(target_, std::to_string(test::deadProcess()));
  const int writer = ::open(held.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(::flock(writer, LOCK_EX | LOCK_NB), 0);
  { const NewFile file(target_); }
  EXPECT_TRUE(fs::exists(held));
  ::close(writer);
  { const NewFile file(target_); }
  EXPECT_FALSE(fs::exists(held));
}

TEST_F(NewFiles, AreCopiedWhereTheyCanBeGivenNoName) {
  const std::string content(200'000, 'c');
  NewFile file(target_, 0600);
  EXPECT_TRUE(file.setRights(fs::perms(0640)) && file.write(content) && file.write("end"));
  vlFailUnder(folder_.path().c_str(), EOPNOTSUPP, 0);
  EXPECT_TRUE(file.takePlace());
  vlFailUnder(nullptr, 0, 0);
  EXPECT_EQ(this->content(), content + "end");
  EXPECT_EQ(fs::status(target_).permissions(), fs::perms(0640));
  EXPECT_EQ(names(), (std::set<std::string>{"f"}));
}

TEST_F(NewFiles, HideUnderNamesThatAreWholeCharacters) {
  std::string name = "n";
  while (name.size() < 120) name += "ü";
  const std::string begins = "." + std::string(utf8Start(name, 100)) + ".";
  std::string machine(65, '\0');
  ASSERT_EQ(gethostname(machine.data(), machine.size() - 1), 0);
  const fs::path half =
      folder_.path() / (begins + machine.c_str() + "-" + std::to_string(test::deadProcess()) + "-1.new");
  std::ofstream(half) << "half";
  { const NewFile file(folder_.path() / name); }
  EXPECT_FALSE(fs::exists(half));
}

TEST_F(NewFiles, MayHaveNamesOfAnyLength) {
  const fs::path longest = folder_.path() / std::string(255, 'n');
  NewFile file(longest);
  EXPECT_TRUE(file.isOpen() && file.write("x") && file.takePlace());
  EXPECT_TRUE(fs::exists(longest));
}

}  // namespace
}  // namespace vlclientui
