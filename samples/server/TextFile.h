#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "../TiffFile.h"

namespace vlclientui::samples {

/// Writes a file anew. A failure is a SampleFailure.
inline void writeText(const std::filesystem::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw SampleFailure(path.string() + " cannot be written");
}

}  // namespace vlclientui::samples
