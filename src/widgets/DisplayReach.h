#pragma once

#include <string>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
/// The toolkit ends the process where its window system cannot be reached: whoever wants to live on asks here
/// before it makes its application.
namespace vlclientui::widgets {

/// Why no window can be shown, as a sentence for a person; empty where one can.
[[nodiscard]] std::string displayProblem();

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
