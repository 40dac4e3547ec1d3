#include "viewer/project/SessionFile.h"

#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/LibXmlService.h"
#include "support/LeftOver.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

class KeptSession : public testing::Test {
 protected:
  KeptSession() {
    auto platform = std::make_shared<Platform>();
    platform->xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation("/home/u"));
    platform_ = platform;
  }

  static Project withService(const std::string& reference) {
    Project project;
    project.services = {{reference, {}}};
    return project;
  }

  test::TemporaryFolder folder_;
  fs::path file_ = folder_.path() / "new folder" / "session.VLProject";
  std::shared_ptr<const Platform> platform_;
};

TEST_F(KeptSession, ComesBackFromAFolderThatItMakes) {
  EXPECT_FALSE(SessionFile(platform_, file_).find().project);
  EXPECT_EQ(SessionFile(platform_, file_).keep(withService("/a.tif")), "");
  EXPECT_EQ(SessionFile(platform_, file_).find().project, withService("/a.tif"));
}

TEST_F(KeptSession, ThatCannotBeUsedIsToldAndStaysAside) {
  fs::create_directory(file_.parent_path());
  std::ofstream(file_) << "<VLProject Version='99'/>";
  const SessionFile session(platform_, file_);
  const auto found = session.find();
  EXPECT_FALSE(found.project);
  EXPECT_NE(found.problem.find("version 99"), std::string::npos) << found.problem;
  EXPECT_NE(found.problem.find("It stays as '" + file_.string() + ".unusable'"), std::string::npos);
  EXPECT_TRUE(fs::exists(file_.string() + ".unusable"));
  EXPECT_FALSE(session.find().project);
  EXPECT_EQ(session.find().problem, "") << "told once";
}

TEST_F(KeptSession, ThatCannotBeUsedReplacesNoEarlierOne) {
  fs::create_directory(file_.parent_path());
  for (const char* version : {"97", "98", "99"}) {
    std::ofstream(file_) << "<VLProject Version='" << version << "'/>";
    EXPECT_TRUE(SessionFile(platform_, file_).find().mayBeReplaced);
  }
  for (const char* place : {".unusable", ".unusable-2", ".unusable-3"})
    EXPECT_TRUE(fs::exists(file_.string() + place)) << place;
}

TEST_F(KeptSession, ThatCannotBePutAsideIsNotReplaced) {
  const fs::path file = folder_.path() / std::string(250, 'n');  // no room for another ending
  std::ofstream(file) << "<VLProject Version='99'/>";
  const auto found = SessionFile(platform_, file).find();
  EXPECT_FALSE(found.mayBeReplaced);
  EXPECT_NE(found.problem.find("It cannot be put aside (File name too long)"), std::string::npos);
  EXPECT_TRUE(fs::exists(file));
}

TEST_F(KeptSession, TellsWhyItCannotBeKept) {
  std::ofstream(file_.parent_path()) << "no folder";
  EXPECT_NE(SessionFile(platform_, file_).keep({}).find("cannot be written"), std::string::npos);
}

TEST_F(KeptSession, TakesAwayWhatADeadProgramHadHalfWritten) {
  fs::create_directory(file_.parent_path());
  const fs::path ofDead = test::leaveHalf(file_, std::to_string(test::deadProcess()));
  const fs::path ofLiving = test::leaveHalf(file_, std::to_string(getpid()));
  const fs::path ofNobody = test::leaveHalf(file_, "x");
  const SessionFile session(platform_, file_);
  EXPECT_FALSE(fs::exists(ofDead));
  EXPECT_TRUE(fs::exists(ofLiving)) << "another one may be writing it";
  EXPECT_TRUE(fs::exists(ofNobody));
}

}  // namespace
}  // namespace vlclientui::viewer
