#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contracts/Platform.h"
#include "viewpoint/ViewPointSteering.h"

namespace vlclientui::test {

/// A person who steers a viewpoint, on the page or in the dialog. One suite of scenarios is told in these
/// terms and runs once per window system: in memory, and on real widgets. Boxes and buttons go by their
/// names.
class ViewPointPerson {
 public:
  virtual ~ViewPointPerson() = default;

  /// The toolkit of this window system, over the given system.
  [[nodiscard]] virtual std::shared_ptr<Toolkit> equip(const std::shared_ptr<const System>& system) = 0;
  /// Shows the window, which gets the focus.
  virtual void open(ViewPointSteering& window) = 0;
  virtual void click(const std::string& button) = 0;
  /// Clicks when the window next lets pending events run.
  virtual void clickWhileEventsRun(const std::string& button) = 0;
  /// Moves into the box and replaces its text; the box keeps the focus.
  virtual void type(const std::string& box, const std::string& text) = 0;
  virtual void pressEnter() = 0;
  virtual void closeByFrame() = 0;
  /// Goes to another window of the program, and comes back from there.
  virtual void goElsewhere() = 0;
  virtual void comeBack() = 0;

  [[nodiscard]] virtual bool windowIsOpen() const = 0;
  [[nodiscard]] virtual std::string caption() const = 0;
  [[nodiscard]] virtual std::string text(const std::string& box) const = 0;
  /// Names of the buttons that bear the mark, in the order of the layout.
  [[nodiscard]] virtual std::vector<std::string> marked() const = 0;
};

/// Names of the nine buttons, row by row.
inline constexpr const char* steeringButtons[] = {"MoveNW",    "MoveUp", "MoveNE",   "MoveLeft", "Center",
                                                  "MoveRight", "MoveSW", "MoveDown", "MoveSE"};

/// The person of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<ViewPointPerson> makeViewPointPerson();

}  // namespace vlclientui::test
