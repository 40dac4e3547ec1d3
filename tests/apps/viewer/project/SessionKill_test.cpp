// A viewer that is killed at any moment loses ten seconds at most, and damages nothing.
// VLCLIENTUI_KILLS in the environment tells how many times; a few by default.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/LibXmlService.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"
#include "viewer/project/ProjectDocument.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr auto mostLost = std::chrono::seconds(10);

struct NumberedState {
  int number;
  Clock::time_point since;
};

/// The program, and what it tells of its states.
class ChangingViewer {
 public:
  explicit ChangingViewer(const fs::path& folder) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) {
      dup2(ends[1], STDOUT_FILENO);
      setenv("HOME", folder.c_str(), 1);
      setenv("QT_QPA_PLATFORM", "offscreen", 1);
      unsetenv("XDG_DATA_HOME");
      execl(VL_CHANGING_VIEWER, VL_CHANGING_VIEWER, sourceFolder().c_str(), folder.c_str(), nullptr);
      _exit(127);
    }
    ::close(ends[1]);
    output_ = ends[0];
  }
  ChangingViewer(const ChangingViewer&) = delete;
  ChangingViewer& operator=(const ChangingViewer&) = delete;
  ~ChangingViewer() {
    kill();
    ::close(output_);
  }

  /// @returns whether there is one; not where the program has ended before.
  bool readFirst() {
    bool goesOn = true;
    while (states_.empty() && goesOn) goesOn = readSome();
    return goesOn;
  }
  void readUntil(Clock::time_point end) {
    while (Clock::now() < end) {
      pollfd ready{output_, POLLIN, 0};
      if (poll(&ready, 1, 20) > 0 && !readSome()) return;
    }
  }
  void kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
    while (readSome()) {
    }
  }
  [[nodiscard]] const std::vector<NumberedState>& states() const { return states_; }

 private:
  bool readSome() {
    char piece[4096];
    const ssize_t got = ::read(output_, piece, sizeof(piece));
    for (ssize_t i = 0; i < got; ++i) {
      if (piece[i] != '\n') {
        line_ += piece[i];
      } else {
        states_.push_back({std::atoi(line_.c_str()), Clock::now()});
        line_.clear();
      }
    }
    return got > 0;
  }

  pid_t process_ = 0;
  int output_ = -1;
  std::string line_;
  std::vector<NumberedState> states_;
};

class KilledSession : public testing::Test {
 protected:
  /// -1 where there is none yet. @throws RuntimeFailure where it is damaged.
  [[nodiscard]] int kept() const {
    const fs::path file = folder_.path() / "session.VLProject";
    if (!fs::exists(file)) return -1;
    const Project project = openProject(xml_, file);
    return project.services.empty() ? 0 : std::atoi(project.services.front().state.name.c_str());
  }
  /// Whether that state was the present one at some moment that is not too long ago.
  static bool isOfLate(int number, const std::vector<NumberedState>& states, Clock::time_point now) {
    for (std::size_t i = 0; i < states.size(); ++i) {
      const auto until = i + 1 < states.size() ? states[i + 1].since : now;
      if (states[i].number == number && until >= now - mostLost) return true;
    }
    return false;
  }

  test::TemporaryFolder folder_;
  platform::LibXmlService xml_{platform::PathTranslation("/home/u")};
};

TEST_F(KilledSession, ComesBackAsItWasTenSecondsBeforeAtMost) {
  const char* const told = std::getenv("VLCLIENTUI_KILLS");
  const int kills = told == nullptr ? 4 : std::atoi(told);
  const unsigned seed = std::random_device()();
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> span(0, 13'000);
  int former = -1;
  for (int i = 0; i < kills; ++i) {
    ChangingViewer viewer(folder_.path());
    ASSERT_TRUE(viewer.readFirst()) << "it does not start";
    viewer.readUntil(Clock::now() + milliseconds(span(random)));
    const auto now = Clock::now();
    viewer.kill();
    EXPECT_EQ(viewer.states().front().number, std::max(former, 0))
        << "what was kept came back, seed " << seed;
    ASSERT_NO_THROW(former = kept()) << "seed " << seed;
    const int present = std::max(former, 0);
    EXPECT_TRUE(isOfLate(present, viewer.states(), now))
        << "kept " << former << " of " << viewer.states().back().number << ", seed " << seed;
  }
  EXPECT_GT(former, 0) << "something was kept";
}

}  // namespace
}  // namespace vlclientui::viewer
