#pragma once

#include <filesystem>

#include <sys/types.h>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// What is written under a hidden name is locked by its writer for as long as it lives. Numbers of processes
/// alone do not tell that: a process in another container has one that nobody bears here.

/// Locks a hidden file or folder that this process has just made, until its descriptor is closed.
/// @returns whether it is this writer's now: held and still there, or on a file system without locks. If not,
/// another process takes it for a left-over at this moment, and it has to be made anew.
[[nodiscard]] bool holdAsWriter(int descriptor);

/// Removes a hidden file, or a folder with all in it, unless its writer may still live: that process is
/// there, or somebody holds it. Where files have no locks it must also be more than a day old.
/// @param writer the process that its name tells; 0 where it tells none, and nothing is done.
void removeAbandoned(const std::filesystem::path& path, pid_t writer);

}  // namespace vlclientui
#pragma GCC visibility pop
