#pragma once

namespace vlclientui::vlhost {

/// What the program ends with. Scripts depend on these numbers: they stay.
enum ExitCode {
  Success = 0,
  Failure = 1,        ///< something was refused or failed
  WrongUsage = 2,     ///< the command line makes no sense
  WrongDocument = 3,  ///< a job or a file of operations cannot be read or makes no sense
};

}  // namespace vlclientui::vlhost
