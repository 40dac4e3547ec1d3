#pragma once

#include "ExportCommand.h"

namespace vlclientui::vlhost {

/// Shows how far an export is on standard error.
class ProgressLine {
 public:
  explicit ProgressLine(ProgressOutput output);

  /// @param share from 0 to 1.
  void show(double share);
  /// Ends the line, so that the next output begins a new one.
  void end();

 private:
  bool isShown_;
  int percent_ = -1;
  bool isOpen_ = false;
};

}  // namespace vlclientui::vlhost
