#pragma once

#include <QString>
#include <functional>

namespace vlclientui::viewer {

/// Has work done on a thread of its own, and waits for it on the thread of the windows. What is quick is over
/// before anything is seen; what lasts gets a window that shows that it goes on, in which a person can give
/// it up. Windows are painted meanwhile, and nothing else takes input.
/// @param what is waited for, for a person, as long as no server is known.
/// @param work must hold all that it uses, since it may outlive the call for a while.
/// @returns false where it was given up. @throws what the work throws.
[[nodiscard]] bool doBesideWindows(const QString& what, std::function<void()> work);

}  // namespace vlclientui::viewer
