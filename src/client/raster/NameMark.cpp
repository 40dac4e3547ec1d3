#include "client/raster/NameMark.h"

#include <cstdint>

namespace vlclientui::client {

// FNV-1a.
std::string nameMark(std::string_view name, std::size_t digits) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  std::string mark;
  for (std::size_t i = 0; i < digits; ++i, hash >>= 4U) mark += "0123456789abcdef"[hash & 0xFU];
  return mark;
}

}  // namespace vlclientui::client
