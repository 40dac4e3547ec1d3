#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "contracts/controls/Control.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A frame around other controls, with a caption that may be empty.
class Frame : public Control {
 public:
  Frame(ControlContainer& container, std::string name, std::string caption);
  [[nodiscard]] const std::string& caption() const { return caption_; }

 private:
  std::string caption_;
};

/// A row of tabs; the first is selected to begin with. Writing captions and removing tabs raise no event.
/// Without tabs nothing is selected.
class TabStrip : public Control {
 public:
  TabStrip(ControlContainer& container, std::string name, std::vector<std::string> captions);

  [[nodiscard]] std::size_t count() const { return captions_.size(); }
  [[nodiscard]] const std::vector<std::string>& captions() const { return captions_; }
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  /// @throws RuntimeFailure (MissingObject) when no tab is left.
  [[nodiscard]] const std::string& selectedCaption() const;
  /// @throws RuntimeFailure (InvalidIndex) when there is no such tab.
  void setCaption(std::size_t index, std::string caption);
  /// The first tab is selected when the selected one goes. @throws RuntimeFailure (InvalidIndex).
  void removeTab(std::size_t index);
  /// A person clicks a tab, also the selected one.
  void userSelects(std::size_t index);

  Event<> click;

 private:
  std::vector<std::string> captions_;
  std::optional<std::size_t> selected_;
};

/// A tree of nodes with unique keys.
class TreeView : public Control {
 public:
  struct Node {
    std::string key;
    std::string parentKey;  ///< empty for a node at the top
    std::string text;
  };

  TreeView(ControlContainer& container, std::string name);

  [[nodiscard]] const std::vector<Node>& nodes() const { return nodes_; }
  /// In the order of their making. @throws RuntimeFailure for a key in use or an unknown parent.
  void addNode(const std::string& parentKey, const std::string& key, std::string text);
  void clear();
  /// Empty while no node is selected.
  [[nodiscard]] const std::string& selectedKey() const { return selectedKey_; }
  /// Selects without an event. @throws RuntimeFailure (InvalidIndex) for an unknown key.
  void markSelected(const std::string& key);
  /// A person clicks a node, also the selected one.
  void userSelects(const std::string& key);

  Event<> nodeClick;

 private:
  [[nodiscard]] bool hasNode(const std::string& key) const { return keys_.contains(key); }

  std::vector<Node> nodes_;
  std::unordered_set<std::string> keys_;
  std::string selectedKey_;
};

/// Rows under column headers, at most one of them selected.
class ReportList : public Control {
 public:
  using Row = std::vector<std::string>;  ///< the row's text, then its sub-items

  ReportList(ControlContainer& container, std::string name, std::vector<std::string> columns);

  [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  void addRow(Row row);
  void clear();
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  void userSelects(std::size_t row);

  Event<> click;

 private:
  std::vector<std::string> columns_;
  std::vector<Row> rows_;
  std::optional<std::size_t> selected_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
