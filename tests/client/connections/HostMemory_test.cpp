#include "client/connections/HostMemory.h"

#include <fstream>

#include <gtest/gtest.h>

#include "contracts/Silence.h"
#include "support/TemporaryDataHome.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class HostMemoryTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path file() const { return folder_.path() / "connections" / "hosts.json"; }

  test::TemporaryFolder folder_;
};

TEST_F(HostMemoryTest, RemembersAcrossPrograms) {
  HostMemory(file()).remember("Maps.example:8080", "http://maps.example:8080/wcs");
  HostMemory again(file());
  EXPECT_EQ(again.placeOf(" maps.example:8080"), "http://maps.example:8080/wcs");
  EXPECT_FALSE(again.placeOf("maps.example"));
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0600));
}

TEST_F(HostMemoryTest, ForgetsAcrossProgramsAndSeesWhatOthersLearn) {
  HostMemory one(file());
  HostMemory other(file());
  one.remember("a", "http://a/wcs");
  other.remember("b", "http://b/ows");
  EXPECT_EQ(one.placeOf("b"), "http://b/ows");
  one.forget("a");
  EXPECT_FALSE(other.placeOf("a"));
  EXPECT_EQ(HostMemory(file()).placeOf("b"), "http://b/ows");
}

TEST_F(HostMemoryTest, KeepsTheLatestHosts) {
  HostMemory memory(file());
  for (int i = 0; i < 205; ++i) memory.remember("h" + std::to_string(i), "http://h/" + std::to_string(i));
  EXPECT_FALSE(HostMemory(file()).placeOf("h4"));
  EXPECT_EQ(HostMemory(file()).placeOf("h5"), "http://h/5");
  EXPECT_EQ(HostMemory(file()).placeOf("h204"), "http://h/204");
}

TEST_F(HostMemoryTest, AsksNothingButAddressesOfTheWebWhateverItsFileSays) {
  fs::create_directories(file().parent_path());
  std::ofstream(file()) << R"({"a":"file:///etc/passwd","b":7,"c":"http://u:p@c/","d":"http://d/wcs"})";
  HostMemory memory(file());
  for (const char* const host : {"a", "b", "c"}) EXPECT_FALSE(memory.placeOf(host)) << host;
  EXPECT_EQ(memory.placeOf("d"), "http://d/wcs");
  std::ofstream(file()) << "{damaged";
  EXPECT_FALSE(HostMemory(file()).placeOf("d"));
}

TEST_F(HostMemoryTest, DropsThePiecesOfReferencesThatOlderFilesHold) {
  fs::create_directories(file().parent_path());
  std::ofstream(file()) << R"({"h:80/a/..":"http://h/wcs","h/":"http://h/wcs","https://h":"https://h/wcs"})";
  HostMemory memory(file());
  EXPECT_FALSE(memory.placeOf("h:80/a/.."));
  EXPECT_FALSE(memory.placeOf("h/"));
  EXPECT_EQ(memory.placeOf("https://h"), "https://h/wcs");
}

TEST_F(HostMemoryTest, ThatCannotBeWrittenIsToldAndLastsAsLongAsTheProgram) {
  std::ofstream(folder_.path() / "connections") << "a file where the folder should be";
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  HostMemory memory(file());
  memory.remember("a", "http://a/wcs");
  EXPECT_NE(told.find("cannot be written"), std::string::npos) << told;
  EXPECT_EQ(memory.placeOf("a"), "http://a/wcs");
}

TEST_F(HostMemoryTest, WithoutAFileLastsAsLongAsTheProgram) {
  HostMemory memory;
  memory.remember("a", "http://a/wcs");
  EXPECT_EQ(memory.placeOf("a"), "http://a/wcs");
  memory.forget("a");
  EXPECT_FALSE(memory.placeOf("a"));
}

}  // namespace
}  // namespace vlclientui::client
