#pragma once

#include <cstdint>

#pragma GCC visibility push(default)
namespace vlclientui {

/// Counts what keeps the library in memory. Every public object holds one of these.
class LiveObject {
 public:
  LiveObject();
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;
  ~LiveObject();
};

/// Of all threads.
[[nodiscard]] std::int64_t liveObjectCount();

}  // namespace vlclientui
#pragma GCC visibility pop
