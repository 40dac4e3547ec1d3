#pragma once

#include <vector>

class QWidget;

namespace vlclientui::viewer {

/// Leads Tab through the parts of windows, one after another, and through each as before. Pages that come
/// late would be reached behind all else otherwise. @param parts those of several windows are kept apart.
void leadTabThrough(const std::vector<QWidget*>& parts);

}  // namespace vlclientui::viewer
