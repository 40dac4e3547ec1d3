#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// So many threads wait for servers at a time: they cost next to nothing meanwhile.
inline constexpr std::size_t waitersAtATime = 8;

/// Does pieces of work on this thread and on helpers, which are given up with it; returns when all are done.
/// @param threads at most, this one among them. @param makeWorker makes one per thread: `worker(i)` does the
/// piece i. Neither may throw.
template <class MakeWorker>
void doSideBySide(std::size_t pieces, std::size_t threads, MakeWorker makeWorker) {
  std::atomic<std::size_t> next = 0;
  const auto drain = [&] {
    auto worker = makeWorker();
    for (std::size_t i = next++; i < pieces; i = next++) worker(i);
  };
  const auto help = [&drain, link = WaitScope::link()] {
    const WaitScope scope(link);
    drain();
  };
  std::vector<std::jthread> helpers;
  for (std::size_t i = 1; i < std::min(pieces, threads); ++i) helpers.emplace_back(help);
  drain();
}

}  // namespace vlclientui::client
