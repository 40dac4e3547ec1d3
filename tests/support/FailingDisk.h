#pragma once

#include <cstdint>

/// A disk that is full, may not be written or breaks, in one folder and below, without mounting anything:
/// this library's system calls stand before those of the system. Programs that link it ask for the failure
/// themselves; others are started with it in LD_PRELOAD, and VL_FAIL_UNDER (the folder), VL_FAIL_ERROR (a
/// number of errno) and VL_FAIL_AFTER (bytes) in their environment.
extern "C" {

/// From now on, in this process and those that it forks. @param folder absolute; null ends it.
/// @param error ENOSPC, EDQUOT or EIO, which writing meets after so many bytes; EROFS, which nothing may be
/// made, renamed, removed or opened for writing with; EOPNOTSUPP, which linkat alone is refused with.
void vlFailUnder(const char* folder, int error, std::int64_t afterBytes);
}
