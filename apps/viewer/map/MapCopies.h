#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <string>

#include "client/mapping/CopyMaker.h"
#include "viewer/map/ToldOnce.h"

namespace vlclientui::viewer {

/// Small copies of large images without overviews, in the cache of the person who runs the program: asks for
/// them to be made, and tells how that goes.
class MapCopies : public QObject {
  Q_OBJECT

 public:
  explicit MapCopies(QObject* parent = nullptr);
  /// Gives up what is being made.
  ~MapCopies() override;

  /// What draws maps looks here.
  [[nodiscard]] std::shared_ptr<const client::SmallCopies> copies() const { return copies_; }
  /// A copy of this file would be of use.
  void want(const std::string& file) { maker_.want(file); }
  /// Nothing is made before a person allows it.
  void allow(bool isAllowed) { maker_.allow(isAllowed); }
  /// What is being made, and all that waits.
  void giveUp();

  /// Whether images wait for a copy.
  [[nodiscard]] bool isAnyWanted() const { return maker_.wanted() > 0; }
  /// For a person: what is being made; empty when nothing is.
  [[nodiscard]] QString progress() const;
  /// For a person: why the last one could not be made; empty after one that was.
  [[nodiscard]] QString problem() const { return QString::fromStdString(maker_.problem()); }

 signals:
  /// There is something new to tell.
  void changed();
  void made();

 private:
  void tell();

  std::shared_ptr<client::SmallCopies> copies_;
  std::size_t seen_ = 0;  ///< version of the copies
  ToldOnce told_;
  client::CopyMaker maker_;  ///< goes first: its thread tells this object
};

}  // namespace vlclientui::viewer
