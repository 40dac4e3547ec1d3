#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Operations.h"
#include "contracts/System.h"
#include "contracts/controls/Form.h"
#include "runs/RunFile.h"

#pragma GCC visibility push(default)
namespace vlclientui::runs {

/// What a run needs from its host.
struct RunHost {
  /// Shows the dialog that an `open` names and waits until it is closed. @returns the result that the dialog
  /// hands to its host. Failures end the run.
  std::function<std::string(const RunStatement& open)> showDialog;
  /// Takes what a `read` read.
  std::function<void(const std::string& what, const std::string& value)> tellRead;
  /// Runs an action a moment later, in the event loop of the windows. Empty for windows that nobody sees:
  /// then each statement follows at once.
  std::function<void(std::function<void()>)> later = {};
};

/// Does what a run file says, in a person's place, on the windows of this thread.
class RunPlayer : public PersonInPlace {
 public:
  /// @param statements as readRun gives them. @param system must outlive this object. @param host shows the
  /// dialogs.
  RunPlayer(std::vector<RunStatement> statements, const System& system, RunHost host);

  /// From the first statement to the last. @throws RuntimeFailure that names line, window and control of the
  /// statement that could not be done; all windows are closed then.
  void run();

  void windowAppeared(Form& form) override;
  [[nodiscard]] MessageAnswer answer(const MessageBox& box) override;
  [[nodiscard]] std::optional<std::string> chooseFile(const FileDialog& dialog) override;
  [[nodiscard]] std::optional<FolderChoice> chooseFolder(const FolderDialog& dialog) override;

 private:
  [[nodiscard]] const RunStatement* next() const;
  [[nodiscard]] const RunStatement& take();
  [[nodiscard]] std::shared_ptr<Form> window();
  [[nodiscard]] bool isOpen();
  void playAtOnce(Form& form);
  void playLater();
  void step();
  void perform(const RunStatement& statement);
  void performInWindow(const RunStatement& statement);
  void choose(const std::string& name);
  [[nodiscard]] std::string readValue(const std::string& what);
  void readOrExpect(const RunStatement& statement);
  void fail(const RunStatement* statement, const std::string& reason);
  void closeAll();
  /// Over each `mayanswer` that is none to this message; over all where the text is empty.
  void passOverQuestions(const std::string& text);
  [[nodiscard]] std::optional<std::string> nextFile();
  [[nodiscard]] std::string logicPath(const std::string& file) const;

  std::vector<RunStatement> statements_;
  const System& system_;
  RunHost host_;
  std::size_t at_ = 0;
  std::vector<std::weak_ptr<Form>> windows_;  ///< that appeared, newest last
  std::string chosen_;                        ///< name of the window that was asked for; empty for the newest
  bool isStepDue_ = false;
  std::string message_;  ///< the last one shown
  std::string result_;   ///< of the last dialog
  std::string failure_;  ///< the first one
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace vlclientui::runs
#pragma GCC visibility pop
