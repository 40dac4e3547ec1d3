#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The operators new and delete of this program: they count what is alive, and can fail.
namespace vlclientui::test::memory {

/// Allocations that were not given back yet, of all threads.
[[nodiscard]] std::int64_t alive();

/// Counts the allocations of this thread from here on. @param failing the one that fails with std::bad_alloc,
/// from 1; 0 for none: then the first from each place is noted.
void arm(std::size_t failing, bool notesPlaces = false);
/// Neither counts nor fails any more.
void disarm();
/// A person's next act: allocations from the same place in another act are another matter.
void nextAct();
/// Since the last arm.
[[nodiscard]] std::size_t allocations();
/// Whether one failed since the last arm, and whether the library of windows stood among its callers.
[[nodiscard]] bool failed();
[[nodiscard]] bool failedInLibrary();
/// The allocations to let fail after a run that noted places.
[[nodiscard]] const std::vector<std::size_t>& worthFailing();

}  // namespace vlclientui::test::memory
