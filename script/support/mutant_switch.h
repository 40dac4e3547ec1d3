#pragma once

namespace mutant {

/// Whether the mutant of this number is the one that VLCLIENTUI_MUTANT names.
__attribute__((visibility("default"))) bool on(int number);

}  // namespace mutant
