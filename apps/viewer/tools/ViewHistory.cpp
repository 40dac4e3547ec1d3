#include "viewer/tools/ViewHistory.h"

#include <cstddef>

namespace vlclientui::viewer {

void ViewHistory::note(const MapFrame& view) {
  if (views_.empty()) return views_.push_back(view);
  const MapFrame& present = views_[at_];
  const bool isSame = present.middle() == view.middle() && present.pixel() == view.pixel();
  if (isSame || present.system() != view.system()) {
    views_[at_] = view;
    return;
  }
  views_.erase(views_.begin() + static_cast<std::ptrdiff_t>(at_) + 1, views_.end());
  views_.push_back(view);
  if (views_.size() > most) views_.erase(views_.begin());
  at_ = views_.size() - 1;
}

}  // namespace vlclientui::viewer
