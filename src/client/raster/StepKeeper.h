#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace vlclientui::client {

/// Keeps what was read of a raster, step by step, so that it need not be read a second time.
///
/// Implementers: called on whatever thread reads. A step of the same name always has as many bytes.
class StepKeeper {
 public:
  virtual ~StepKeeper() = default;

  /// Fills in the pixels of a step. @returns false where it is not kept.
  [[nodiscard]] virtual bool find(const std::string& step, std::span<std::byte> pixels) = 0;
  /// @returns false where it cannot be kept, which ends the reading.
  [[nodiscard]] virtual bool keep(const std::string& step, std::span<const std::byte> pixels) = 0;
};

}  // namespace vlclientui::client
