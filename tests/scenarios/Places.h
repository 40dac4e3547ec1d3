#pragma once

#include <cstdint>
#include <unordered_set>

namespace vlclientui::test {

/// Where calls come from, told by the stack of the caller: what a sweep has proved once at a place need not
/// be proved at each turn of a loop.
class CallerPlaces {
 public:
  /// Whether nobody was here before with this stack. @param act sets apart what comes from one place for
  /// different reasons.
  bool isNew(std::uint64_t act);

 private:
  std::unordered_set<std::uint64_t> seen_;
};

/// VLCLIENTUI_SWEEP=every in the environment: leaves out no call and no allocation.
[[nodiscard]] bool sweepsEveryCall();
/// VLCLIENTUI_SWEEP=places or every: each place, also where there are thousands.
[[nodiscard]] bool sweepsEveryPlace();

}  // namespace vlclientui::test
