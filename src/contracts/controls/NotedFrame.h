#pragma once

#include <string>
#include <utility>

#include "contracts/controls/PageControls.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A frame with a note: what a reader of the controls inside has to know, for views to tell beside them.
class NotedFrame : public Frame {
 public:
  /// Made as any frame, without a note.
  using Frame::Frame;

  /// Empty for nothing.
  [[nodiscard]] const std::string& note() const { return note_; }
  /// Tells views; empty takes the note away.
  void setNote(std::string note) {
    note_ = std::move(note);
    changed.raise(Aspect::Text);
  }

 private:
  std::string note_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
