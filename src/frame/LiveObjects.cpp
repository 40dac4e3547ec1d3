#include "frame/LiveObjects.h"

#include <atomic>

namespace vlclientui {

namespace {
std::atomic<std::int64_t> count{0};
}

LiveObject::LiveObject() { ++count; }
LiveObject::~LiveObject() { --count; }

std::int64_t liveObjectCount() { return count.load(); }

}  // namespace vlclientui
