#include "platform/WholeFile.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "contracts/RuntimeFailure.h"
#include "platform/TemporaryFolder.h"

namespace vlclientui::platform {
namespace {

using Names = std::set<std::string>;

/// Files of this process may grow to this many bytes only, as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : oldHandler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    signal(SIGXFSZ, oldHandler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  sighandler_t oldHandler_;
  rlimit old_{};
};

class WholeFile : public TemporaryFolder {};

TEST_F(WholeFile, WritesANewFileAndReplacesAnOldOne) {
  writeWholeFile(path("f"), "one");
  EXPECT_EQ(read("f"), "one");
  writeWholeFile(path("f"), "2");
  EXPECT_EQ(read("f"), "2");
  EXPECT_EQ(readWholeFile(path("f")), "2");
  EXPECT_EQ(names(), Names{"f"});
}

TEST_F(WholeFile, AWriteThatCannotFinishLeavesTheOldFileWhole) {
  write("f", "old");
  {
    const FileSizeLimit limit(1000);
    EXPECT_THROW(writeWholeFile(path("f"), std::string(5000, 'x')), RuntimeFailure);
  }
  EXPECT_EQ(read("f"), "old");
  EXPECT_EQ(names(), Names{"f"});
}

TEST_F(WholeFile, NothingIsLeftWhereNoFileCanStand) {
  std::filesystem::create_directory(path("folder"));
  EXPECT_THROW(writeWholeFile(path("folder"), "x"), RuntimeFailure);
  EXPECT_THROW(writeWholeFile(path("missing/f"), "x"), RuntimeFailure);
  EXPECT_EQ(names(), Names{"folder"});
}

TEST_F(WholeFile, APipeIsNotReplaced) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_THROW(writeWholeFile(path("pipe"), "x"), RuntimeFailure);
  EXPECT_TRUE(std::filesystem::is_fifo(path("pipe")));
  EXPECT_EQ(names(), Names{"pipe"});
}

TEST_F(WholeFile, AccessRightsOfAnOldFileStay) {
  write("f", "old");
  ASSERT_EQ(chmod(path("f").c_str(), 0640), 0);
  writeWholeFile(path("f"), "new");
  struct stat status {};
  ASSERT_EQ(stat(path("f").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
}

TEST_F(WholeFile, ALinkStaysALink) {
  write("real", "old");
  std::filesystem::create_symlink("real", path("link"));
  writeWholeFile(path("link"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
  EXPECT_EQ(read("real"), "new");
}

TEST_F(WholeFile, ALinkToAFileThatIsNotThereYetLeadsToItAfterwards) {
  std::filesystem::create_symlink("real", path("link"));
  writeWholeFile(path("link"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
  EXPECT_EQ(read("real"), "new");
}

TEST_F(WholeFile, OnlyRegularFilesAreRead) {
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(readWholeFile(path("pipe")), std::nullopt);
  EXPECT_EQ(readWholeFile(folder_), std::nullopt);
  EXPECT_EQ(readWholeFile(path("missing")), std::nullopt);
  EXPECT_EQ(readWholeFile("/dev/zero"), std::nullopt);
  write("empty", "");
  EXPECT_EQ(readWholeFile(path("empty")), "");
}

}  // namespace
}  // namespace vlclientui::platform
