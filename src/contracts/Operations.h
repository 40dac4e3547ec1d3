#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Toolkit.h"

/// What a person does in the library's windows, control by control, whichever toolkit shows them: to be
/// written down as it happens, and to be done again in a person's place.
#pragma GCC visibility push(default)
namespace vlclientui {

/// One thing that a person does.
struct Operation {
  /// What it is that a person does.
  enum class Kind {
    Enter,      ///< moves the focus to the control
    Leave,      ///< moves it out of all controls
    Set,        ///< types the value; of a check box "on" or "off" is what it then shows
    Choose,     ///< selects the value: an entry, a tab, a row; rows of a list box with line ends between
    Press,      ///< clicks a button
    Close,      ///< closes the window by its frame
    Answer,     ///< of a message box: "Ok", "Cancel", "Yes" or "No"; its text in `more`
    MayAnswer,  ///< told by forms: the answer with which all goes on, of a question that comes up only where
                ///< a file is there already; a piece of its text in `more`
    File,       ///< chosen in a dialog of files or folders, as the logic is told it; empty for Cancel
    Row,        ///< clicks a row of a form engine's list
    Open,       ///< double clicks it
    Back,       ///< goes up in it
    Field,      ///< sets the field of a form engine's page that `control` is the path of
    Button,     ///< presses the button there
    Dialog,     ///< told by hosts: has them show the dialog that `control` names, for the service in `value`
    DialogEnd,  ///< told by hosts: that is closed
    Return,     ///< presses Enter in the control, or where none has the focus; a button is pressed (Press)
  };

  /// What is done; it tells how the other members are meant.
  Kind kind = Kind::Press;
  std::string window = {};   ///< name of the form; empty where there is none
  std::string control = {};  ///< its name
  /// What is typed, chosen or answered; see Kind.
  std::string value = {};
  /// Of a dialog: names and values in turn, which the run needs to begin with the same window.
  std::vector<std::string> more = {};

  /// Whether all members are equal.
  bool operator==(const Operation&) const = default;
};

/// For forms, toolkits and engines: tells every listener of the thread, before the operation has any effect.
/// An operation inside another one, as in a window that a button opened, is told too.
void tellOperation(const Operation& operation) noexcept;

/// Hears the operations of the thread that it was made on, from its making to its destruction, which must
/// happen on that thread too. What the observer raises is dropped.
class OperationListener {
 public:
  /// What is called with each operation, on the thread of the listener.
  using Observer = std::function<void(const Operation&)>;

  /// Listens from here on. @param observer never empty.
  explicit OperationListener(Observer observer);
  OperationListener(const OperationListener&) = delete;
  OperationListener& operator=(const OperationListener&) = delete;
  ~OperationListener();

 private:
  std::shared_ptr<Observer> observer_;
};

/// Acts in a person's place, in all windows of a thread: is told of each that appears, and asked what a
/// person would be asked. One per thread at a time.
class PersonInPlace {
 public:
  PersonInPlace();
  PersonInPlace(const PersonInPlace&) = delete;
  PersonInPlace& operator=(const PersonInPlace&) = delete;
  virtual ~PersonInPlace();

  /// The one of the calling thread; null where a real person sits.
  [[nodiscard]] static PersonInPlace* ofThread();

  /// The window stands, and its first control has the focus. The form may be used from here on until it is
  /// not loaded any more, and closed inside the call.
  virtual void windowAppeared(Form& form) = 0;
  /// In place of the box.
  [[nodiscard]] virtual MessageAnswer answer(const MessageBox& box) = 0;
  /// In place of the dialog; nothing for Cancel. Paths are the logic's.
  [[nodiscard]] virtual std::optional<std::string> chooseFile(const FileDialog& dialog) = 0;
  /// The same for folders.
  [[nodiscard]] virtual std::optional<FolderChoice> chooseFolder(const FolderDialog& dialog) = 0;
};

/// For toolkits: what `show` lets a person choose, or the one in a person's place; tells of it either way.
[[nodiscard]] std::optional<std::string> chosenFile(const FileDialog& dialog,
                                                    const std::function<std::optional<std::string>()>& show);

/// The same for folders. What is no folder is told as "\\\\name".
[[nodiscard]] std::optional<FolderChoice> chosenFolder(
    const FolderDialog& dialog, const std::function<std::optional<FolderChoice>()>& show);

}  // namespace vlclientui
#pragma GCC visibility pop
