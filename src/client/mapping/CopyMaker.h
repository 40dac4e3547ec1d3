#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "client/mapping/SmallCopies.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Makes small copies one after another on a thread of its own, and only while it is allowed to.
class CopyMaker {
 public:
  /// @param copies where they are kept; never null. @param changed called on that thread when there is
  /// something new to tell; must return soon. It may ask this object, and not change it.
  CopyMaker(std::shared_ptr<SmallCopies> copies, std::function<void()> changed);
  /// Gives up what is being made, and waits for its end, which comes soon.
  ~CopyMaker();
  CopyMaker(const CopyMaker&) = delete;
  CopyMaker& operator=(const CopyMaker&) = delete;

  /// A copy of this raster would be of use. Does nothing for one that waits, or whose copy could not be made.
  void want(const std::filesystem::path& raster);
  /// Begins with what is wanted, or gives up what is being made; that stays wanted.
  void allow(bool isAllowed);
  /// Gives up what is being made, and all that waits.
  void giveUp();

  /// How far the present copy is.
  struct Progress {
    std::filesystem::path raster;  ///< of which a copy is made
    double share = 0;              ///< 0 to 1
    std::size_t waiting = 0;       ///< others
  };
  /// Of what is being made; nothing when nothing is.
  [[nodiscard]] std::optional<Progress> progress() const;
  /// Rasters that wait for a copy, the one that is being made among them.
  [[nodiscard]] std::size_t wanted() const;
  /// For a person: why the last copy could not be made; empty after one that was.
  [[nodiscard]] std::string problem() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
