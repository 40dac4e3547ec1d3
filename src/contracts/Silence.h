#pragma once

#include <functional>
#include <memory>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

/// Many routines end without a word to the person: they keep what they have and their caller goes on. Each
/// such end is told here, so that a host, a log or a developer can learn why nothing happened.
///
/// With VLCLIENTUI_TRACE=1 in the environment every silent end of the process is printed to standard error as
/// "routine: reason"; any other value but "0" names a file that gets the lines appended.
#pragma GCC visibility push(default)
namespace vlclientui {

/// One routine that ended silently.
struct SilentEnd {
  std::string routine;  ///< "Class::routine", or a few words for what has no name
  std::string reason;   ///< one line of UTF-8, at most 300 bytes, no password of an address in it

  /// Whether routine and reason are equal.
  bool operator==(const SilentEnd&) const = default;
};

/// Who ends: by default the function that a call stands in. Event handlers, which have no name, give one.
class RoutineName {
 public:
  // Not explicit, so that a call reads endSilently("why", "File dialog of the browser").
  /// @param name outlives the call; a literal does.
  RoutineName(const char* name) : name_(name) {}  // NOLINT(google-explicit-constructor)
  /// Takes the name of the function at that place.
  RoutineName(const std::source_location& place) : place_(place) {}  // NOLINT(google-explicit-constructor)

  /// "Class::routine", or the name that was given.
  [[nodiscard]] std::string text() const;

 private:
  const char* name_ = nullptr;
  std::source_location place_;
};

/// Tells the trace and every listener of the calling thread. Raises nothing. Not for the ordinary case that
/// there is nothing to do, and never with a whole document as reason.
void endSilently(std::string_view reason,
                 const RoutineName& routine = std::source_location::current()) noexcept;

/// The text of the failure that is being handled. Only inside a catch block.
[[nodiscard]] std::string handledFailureText();

/// Hears the silent ends of the thread that it was made on, from its making to its destruction, which must
/// happen on that thread too. Listeners may come and go at any time, also inside an observer, and each hears
/// all ends.
///
/// The observer is called inside the routine that ends: it may show or keep what it hears, and should leave
/// forms and dialogs alone. What it raises is dropped. Ends that it causes itself are not told to it.
class SilenceListener {
 public:
  /// What is called with each silent end.
  using Observer = std::function<void(const SilentEnd&)>;

  /// Listens from here on. @param observer never empty.
  explicit SilenceListener(Observer observer);
  SilenceListener(const SilenceListener&) = delete;
  SilenceListener& operator=(const SilenceListener&) = delete;
  ~SilenceListener();

 private:
  struct Entry;
  friend void endSilently(std::string_view reason, const RoutineName& routine) noexcept;
  static std::vector<std::shared_ptr<Entry>>& entriesOfThread();

  std::shared_ptr<Entry> entry_;
};

/// Whether the environment asked for the trace on standard error, so that nobody prints the same lines twice.
[[nodiscard]] bool silenceIsPrinted();

}  // namespace vlclientui
#pragma GCC visibility pop
