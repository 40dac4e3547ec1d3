#pragma once

#include <memory>
#include <string>
#include <vector>

#include "scenarios/PropertiesPerson.h"

namespace vlclientui::test {

/// A key that a person presses in the list of attributes.
enum class ListKey { CtrlC, CtrlF1, X };

/// A person at the metadata of a service: at the page in a window of the host, or at the metadata side of the
/// one-window dialog, which has the properties too.
class MetadataPerson : public virtual PropertiesPerson {
 public:
  virtual void clickNode(const std::string& node) = 0;
  virtual void pickRaster(const std::string& caption) = 0;
  virtual void clickAttribute(const std::string& name) = 0;
  virtual void pressInAttributes(ListKey key) = 0;
  /// Puts a text on the clipboard, as from another program.
  virtual void copyElsewhere(const std::string& text) = 0;

  [[nodiscard]] virtual std::vector<std::string> nodes() const = 0;
  [[nodiscard]] virtual std::string markedNode() const = 0;
  /// Captions of a strip of tabs; none while it does not show.
  [[nodiscard]] virtual std::vector<std::string> tabs(const std::string& strip) const = 0;
  [[nodiscard]] virtual std::string tabOnTop(const std::string& strip) const = 0;
  /// Entries of the list of rasters; none while it does not show.
  [[nodiscard]] virtual std::vector<std::string> rasters() const = 0;
  [[nodiscard]] virtual std::string raster() const = 0;
  /// The tree of a document that shows, all opened: two blanks for each step down, name, a bar, value. Empty
  /// while no tree shows.
  [[nodiscard]] virtual std::vector<std::string> treeRows() const = 0;
  /// The attributes of a raster that show: name, a bar, value.
  [[nodiscard]] virtual std::vector<std::string> attributes() const = 0;
  [[nodiscard]] virtual std::string clipboard() const = 0;
};

/// The person of the window system that the test program is built for.
[[nodiscard]] std::unique_ptr<MetadataPerson> makeMetadataPerson();

}  // namespace vlclientui::test
