#pragma once

#include <string>
#include <string_view>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The mosaic method that a lock writes: one word, where the list of methods offers two.
inline constexpr const char* lockRasterMethod = "LockRaster";

/// What a raster's id gives a lock: the part before the first ".", so that "123.0" locks to "123".
[[nodiscard]] std::string lockIdOf(const std::string& rasterId);

/// The service properties that a lock starts from when none are held. @param lockId as lockIdOf gives it.
[[nodiscard]] std::string lockDocument(std::string_view lockId);

/// Whether a list of allowed mosaic methods holds a method. By containment without regard to case, so that a
/// longer word around the method counts as well.
[[nodiscard]] bool allowsMosaicMethod(std::string_view allowedMethods, std::string_view method);

}  // namespace vlclientui
#pragma GCC visibility pop
