#include "ProgressLine.h"

#include <iostream>
#include <string>
#include <utility>

#include <unistd.h>

namespace vlclientui::vlhost {
namespace {

constexpr int barWidth = 40;

}  // namespace

ProgressLine::ProgressLine(ProgressOutput output)
    : isShown_(output == ProgressOutput::Always || isatty(STDERR_FILENO) != 0) {}

void ProgressLine::show(double share) {
  if (!isShown_) return;
  const int percent = static_cast<int>(share * 100);
  if (std::exchange(percent_, percent) == percent) return;
  const int done = static_cast<int>(share * barWidth);
  std::cerr << "\r[" << std::string(static_cast<std::size_t>(done), '=')
            << std::string(static_cast<std::size_t>(barWidth - done), ' ') << "] " << percent << " %"
            << std::flush;
  isOpen_ = true;
}

void ProgressLine::end() {
  percent_ = -1;
  if (std::exchange(isOpen_, false)) std::cerr << "\n";
}

}  // namespace vlclientui::vlhost
