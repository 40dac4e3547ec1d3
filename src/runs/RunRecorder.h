#pragma once

#include <functional>
#include <string>
#include <vector>

#include "contracts/Operations.h"
#include "contracts/System.h"
#include "runs/RunFile.h"

#pragma GCC visibility push(default)
namespace vlclientui::runs {

/// Writes down what a person does in the dialogs of this thread, from its making on, as a run file. Hosts
/// tell when a dialog begins and ends (Operation::Kind::Dialog).
class RunRecorder {
 public:
  /// A text that was typed, as it may be kept in a file.
  using WithoutSecrets = std::function<std::string(const std::string& typed)>;

  /// @param system must outlive this object. @param withoutSecrets asked for each text that was typed.
  RunRecorder(const System& system, WithoutSecrets withoutSecrets);

  /// Whole at any time.
  [[nodiscard]] std::string text() const;
  /// How many statements stand there.
  [[nodiscard]] std::size_t count() const { return statements_.size(); }

 private:
  void hear(const Operation& operation);
  void add(const Operation& operation);
  void replaceLast(const std::string& verb, const std::string& control);
  [[nodiscard]] std::vector<std::string> valueOf(const Operation& operation) const;

  const System& system_;
  WithoutSecrets withoutSecrets_;
  std::vector<RunStatement> statements_;
  int dialogs_ = 0;     ///< that are open; nothing else could be done again
  std::string window_;  ///< that the last statement was about
  std::string asked_;   ///< by the message that the last operation answered
  OperationListener listener_;
};

}  // namespace vlclientui::runs
#pragma GCC visibility pop
