// A test program whose second case ends the whole of it, as if all were well. Run by CheckEarlyEnd.cmake.
#include <cstdlib>

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

TEST(EarlyEnd, First) { SUCCEED(); }
TEST(EarlyEnd, LeavesAtOnce) { std::exit(0); }
TEST(EarlyEnd, LeavesQuickly) { std::quick_exit(0); }
TEST(EarlyEnd, NeverComes) { FAIL(); }

}  // namespace
}  // namespace vlclientui
