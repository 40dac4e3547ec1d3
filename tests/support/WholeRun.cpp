#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

// Joined to each test program: one that ends before its cases are over, or has none to run, has failed,
// whatever it says of itself. Also where it ends by _exit, which asks nobody: that of this program stands
// before the system's.

namespace vlclientui {
namespace {

// Of the process that runs the cases; those that it forks end as they like. 0 once all are over.
pid_t running = 0;
bool hadNone = false;

void failWhereCasesAreLeft() {
  if (running != getpid()) return;
  std::fputs(hadNone ? "No case was there to be run\n" : "The program ended before its cases were over\n",
             stderr);
  std::fflush(nullptr);
  running = 0;
  _exit(1);
}

class WholeRun : public testing::EmptyTestEventListener {
 public:
  void OnTestProgramStart(const testing::UnitTest& program) override {
    running = getpid();
    hadNone = program.test_to_run_count() == 0;
    std::atexit(failWhereCasesAreLeft);
    std::at_quick_exit(failWhereCasesAreLeft);
  }
  void OnTestProgramEnd(const testing::UnitTest& /*program*/) override {
    if (!hadNone) running = 0;
  }
};

// The list owns it.
[[maybe_unused]] const bool isHeard = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new WholeRun);
  return true;
}();

}  // namespace

[[noreturn]] void endAtOnce(int code) {
  failWhereCasesAreLeft();
  for (;;) syscall(SYS_exit_group, code);
}

}  // namespace vlclientui

extern "C" {
[[gnu::visibility("default"), noreturn]] void _exit(int code) { vlclientui::endAtOnce(code); }
[[gnu::visibility("default"), noreturn]] void _Exit(int code) noexcept { vlclientui::endAtOnce(code); }
}
