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
  /// @param container outlives it. @param name unique there. @param caption may be empty.
  Frame(ControlContainer& container, std::string name, std::string caption);
  /// What stands in its upper edge.
  [[nodiscard]] const std::string& caption() const { return caption_; }

 private:
  std::string caption_;
};

/// A row of tabs; the first is selected to begin with. Writing captions and removing tabs raise no event.
/// Without tabs nothing is selected.
class TabStrip : public Control {
 public:
  /// @param container outlives it. @param name unique there. @param captions of the tabs, in order.
  TabStrip(ControlContainer& container, std::string name, std::vector<std::string> captions);

  /// How many tabs there are.
  [[nodiscard]] std::size_t count() const { return captions_.size(); }
  /// In order; valid until the next change.
  [[nodiscard]] const std::vector<std::string>& captions() const { return captions_; }
  /// Index of the selected tab; nothing when no tab is left.
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  /// @throws RuntimeFailure (MissingObject) when no tab is left.
  [[nodiscard]] const std::string& selectedCaption() const;
  /// @throws RuntimeFailure (InvalidIndex) when there is no such tab.
  void setCaption(std::size_t index, std::string caption);
  /// The first tab is selected when the selected one goes. @throws RuntimeFailure (InvalidIndex).
  void removeTab(std::size_t index);
  /// A person clicks a tab, also the selected one.
  void userSelects(std::size_t index);

  /// A person has clicked a tab.
  Event<> click;

 private:
  std::vector<std::string> captions_;
  std::optional<std::size_t> selected_;
};

/// A tree of nodes with unique keys.
class TreeView : public Control {
 public:
  /// One node, as it was added.
  struct Node {
    std::string key;        ///< unique in the tree
    std::string parentKey;  ///< empty for a node at the top
    std::string text;       ///< what a person sees
  };

  /// A tree without nodes. @param container outlives it. @param name unique there.
  TreeView(ControlContainer& container, std::string name);

  /// In the order of their making; valid until the next change.
  [[nodiscard]] const std::vector<Node>& nodes() const { return nodes_; }
  /// In the order of their making. @throws RuntimeFailure for a key in use or an unknown parent.
  void addNode(const std::string& parentKey, const std::string& key, std::string text);
  /// Removes all nodes; none is selected then.
  void clear();
  /// Empty while no node is selected.
  [[nodiscard]] const std::string& selectedKey() const { return selectedKey_; }
  /// Selects without an event. @throws RuntimeFailure (InvalidIndex) for an unknown key.
  void markSelected(const std::string& key);
  /// A person clicks a node, also the selected one.
  void userSelects(const std::string& key);

  /// A person has clicked a node; selectedKey tells which.
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

  /// A list without rows. @param container outlives it. @param name unique there. @param columns the headers.
  ReportList(ControlContainer& container, std::string name, std::vector<std::string> columns);

  /// The headers, from the left.
  [[nodiscard]] const std::vector<std::string>& columns() const { return columns_; }
  /// In order; valid until the next change.
  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  /// Appends a row: its text, then one sub-item for each further column.
  void addRow(Row row);
  /// Removes all rows; none is selected then.
  void clear();
  /// Index of the selected row; nothing for none.
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  /// What names each row.
  [[nodiscard]] std::vector<std::string> firstCells() const;
  /// A person clicks a row, from 0.
  void userSelects(std::size_t row);

  /// A person has clicked a row.
  Event<> click;

 private:
  std::vector<std::string> columns_;
  std::vector<Row> rows_;
  std::optional<std::size_t> selected_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
