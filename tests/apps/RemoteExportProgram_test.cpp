// vlhost as a program of its own, at an export from a server.
#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include "client/network/RemoteExportFixture.h"
#include "client/output/KeptPixels.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

struct Ended {
  int exitCode = -1;  ///< of a program that ended by itself
  double megabytes = 0;
  std::string output;
  std::string errors;
};

/// @param side pixels of the coverage.
class RemoteExportProgram : public RemoteExportFixture {
 protected:
  explicit RemoteExportProgram(int side = 1500) : RemoteExportFixture(side) {}

  [[nodiscard]] Words exportWords(const std::string& file, const Words& more) const {
    Words words = {VL_VLHOST, "export", "ImageService://" + proxy_->address("/wcs") + "/Photograph", "-o",
                   out(file)};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  [[nodiscard]] pid_t start(Words words) const {
    const std::string home = "VLCLIENTUI_HOME=" + sourceFolder();
    const std::string own = "HOME=" + folder_.string();
    std::array<char*, 4> environment = {const_cast<char*>(home.c_str()), const_cast<char*>(own.c_str()),
                                        const_cast<char*>("LC_ALL=C.UTF-8"), nullptr};
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    const int flags = O_CREAT | O_TRUNC | O_WRONLY;
    posix_spawn_file_actions_addopen(&actions, 1, (folder_ / "output").c_str(), flags, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, (folder_ / "errors").c_str(), flags, 0600);
    pid_t child = 0;
    EXPECT_EQ(posix_spawn(&child, VL_VLHOST, &actions, nullptr, pointers.data(), environment.data()), 0);
    posix_spawn_file_actions_destroy(&actions);
    return child;
  }
  /// The peak is looked at while the program runs: what the system tells afterwards counts this program, too,
  /// from which that one was made.
  [[nodiscard]] Ended end(pid_t child) const {
    Ended ended;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
      ended.megabytes = std::max(ended.megabytes, peakOf(child));
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ended.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ended.output = contentOf(folder_ / "output");
    ended.errors = contentOf(folder_ / "errors");
    return ended;
  }
  [[nodiscard]] static double peakOf(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
      if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
    }
    return 0;
  }
  [[nodiscard]] Ended runExport(const std::string& file, const Words& more) const {
    return end(start(exportWords(file, more)));
  }
};

TEST_F(RemoteExportProgram, GoesOnAfterItWasKilledAndGivesTheFileOfAnUnbrokenOne) {
  ASSERT_EQ(runExport("unbroken.Tif", {}).exitCode, 0);
  proxy_->alwaysAfter(7, "only=GetCoverage;hold");
  const pid_t child = start(exportWords("image.Tif", {"--keep-partial"}));
  const fs::path target = out("image.Tif");
  const auto linesOfJournal = [&] {
    const std::string text = contentOf((client::keptFolder(target) / "journal").string());
    return std::ranges::count(text, '\n');
  };
  while (linesOfJournal() < 3) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  kill(child, SIGKILL);
  EXPECT_EQ(end(child).exitCode, -1);
  EXPECT_FALSE(fs::exists(target));
  EXPECT_TRUE(client::keptExport(target));
  proxy_->clear();
  const Ended resumed = runExport("image.Tif", {"--resume"});
  EXPECT_EQ(resumed.exitCode, 0) << resumed.errors;
  EXPECT_NE(resumed.errors.find("going on with "), std::string::npos) << resumed.errors;
  EXPECT_LT(asked().pixels, wholePixels());
  EXPECT_EQ(contentOf(target.string()), contentOf(out("unbroken.Tif")));
  EXPECT_EQ(outputs(), (std::vector<std::string>{"image.Tif", "image.tfw", "unbroken.Tif", "unbroken.tfw"}));
}

TEST_F(RemoteExportProgram, TellsThatItCanGoOnAndThatTheSourceHasChanged) {
  proxy_->alwaysAfter(7, "only=GetCoverage;delay=800;reset");
  const Ended broken = runExport("image.Tif", {"--keep-partial"});
  EXPECT_EQ(broken.exitCode, 1);
  EXPECT_NE(broken.errors.find("--resume goes on with it"), std::string::npos) << broken.errors;
  proxy_->clear();
  makeSource(2);
  const Ended refused = runExport("image.Tif", {"--resume"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.errors.find("source has changed"), std::string::npos) << refused.errors;
  EXPECT_EQ(runExport("image.Tif", {"--restart"}).exitCode, 0);
  EXPECT_EQ(outputs(), (std::vector<std::string>{"image.Tif", "image.tfw"}));
}

TEST_F(RemoteExportProgram, TellsAPlanAndWritesNothing) {
  const Ended text = runExport("image.Tif", {"--dry-run"});
  EXPECT_EQ(text.exitCode, 0) << text.errors;
  for (const char* line :
       {"Requests: 4\n", "To fetch: about 6.", "Time to fetch: about ", "To write: about 6.", "Room: "}) {
    EXPECT_NE(text.output.find(line), std::string::npos) << line << text.output;
  }
  const Ended json = runExport("image.Tif", {"--dry-run", "--json"});
  EXPECT_NE(json.output.find("\"requests\": 4,"), std::string::npos) << json.output;
  EXPECT_NE(json.output.find("\"remote\": true,"), std::string::npos);
  EXPECT_EQ(outputs(), std::vector<std::string>());
}

/// More pixels than the memory that an export may take.
class LargeRemoteExport : public RemoteExportProgram {
 protected:
  LargeRemoteExport() : RemoteExportProgram(9000) {}
};

TEST_F(LargeRemoteExport, StaysBelow200Megabytes) {
  const Ended ended = runExport("image.Tif", {});
  EXPECT_EQ(ended.exitCode, 0) << ended.errors;
  EXPECT_LT(ended.megabytes, 200);
  EXPECT_GT(ended.megabytes, 20) << "the peak was not seen";
  EXPECT_GT(fs::file_size(out("image.Tif")), std::uintmax_t{9000} * 9000 * 3);
  EXPECT_EQ(valuesOf(out("image.Tif"), {4000, 8500, 1000, 500}),
            valuesOf(source().string(), {4000, 8500, 1000, 500}));
}

}  // namespace
}  // namespace vlclientui::test
