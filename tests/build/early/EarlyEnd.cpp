// A test program whose second case ends the whole of it, as if all were well. Run by CheckEarlyEnd.cmake.
#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vlclientui {
namespace {

TEST(EarlyEnd, First) { SUCCEED(); }
TEST(EarlyEnd, LeavesAtOnce) { std::exit(0); }
TEST(EarlyEnd, LeavesQuickly) { std::quick_exit(0); }
TEST(EarlyEnd, LeavesUnasked) { _exit(0); }
TEST(EarlyEnd, LeavesUnaskedByTheOtherName) { std::_Exit(0); }
TEST(EarlyEnd, LeavesInAChildOnly) {
  const pid_t child = fork();
  if (child == 0) _exit(7);
  int state = 0;
  ASSERT_EQ(waitpid(child, &state, 0), child);
  EXPECT_EQ(WEXITSTATUS(state), 7);
}
TEST(EarlyEnd, NeverComes) { FAIL(); }

}  // namespace
}  // namespace vlclientui
