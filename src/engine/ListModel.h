#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "contracts/XmlDocument.h"

namespace vlclientui::engine {

/// The icon before a row. A message row has none.
enum class RowIcon : std::uint8_t { Message, Folder, Service };

struct ListColumn {
  std::string name;    ///< as the document names it
  std::string title;   ///< the name with "_" as blank
  double width = 1.0;  ///< share of the list's width, above 0; only the proportions count

  bool operator==(const ListColumn&) const = default;
};

/// The columns of a `list_fields` document: one element per column, in display order.
/// @returns nothing when the text is no such document or a width is no number above 0. A column without
/// a width takes an even share.
[[nodiscard]] std::optional<std::vector<ListColumn>> parseListFields(const XmlService& xml,
                                                                     std::string_view text);

/// The rows of a `list_values` document, held in one pool of text so that a list of 100,000 rows costs
/// little more than its characters. Immutable once parsed.
class ListRows {
 public:
  /// A number that stands for an attribute's name in all rows.
  using NameId = std::uint32_t;

  /// @returns null when the text is no `list_values` document.
  [[nodiscard]] static std::shared_ptr<const ListRows> parse(const XmlService& xml, std::string_view text);

  [[nodiscard]] std::size_t count() const { return rows_.size(); }
  /// @pre row < count().
  [[nodiscard]] RowIcon icon(std::size_t row) const { return rows_[row].icon; }
  /// @pre row < count().
  [[nodiscard]] std::string_view displayName(std::size_t row) const;
  /// Nothing when no row has an attribute of that name.
  [[nodiscard]] std::optional<NameId> findName(std::string_view attribute) const;
  /// Empty when the row lacks the attribute. @pre row < count().
  [[nodiscard]] std::string_view value(std::size_t row, NameId attribute) const;

 private:
  struct Cell {
    NameId name;
    std::size_t begin;  ///< in the pool; the text ends where the next one begins
  };
  struct Row {
    std::size_t firstCell;
    RowIcon icon;
  };

  void addRow(const XmlNode& element);
  void addCell(const std::string& name, const std::string& value);
  NameId intern(const std::string& name);
  [[nodiscard]] std::string_view text(std::size_t cell) const;

  std::string pool_;
  std::vector<Cell> cells_;
  std::vector<Row> rows_;
  std::unordered_map<std::string, NameId> names_;
};

/// A list as it is shown: columns over rows. The first column shows the rows' display names, each further
/// one the attribute of its own name. Immutable, and cheap to make anew over the same rows.
class ListModel {
 public:
  /// No columns gives one column "Name"; null rows give none. @param place where the rows stand.
  ListModel(std::vector<ListColumn> columns, std::shared_ptr<const ListRows> rows, std::string place = "/");

  /// The path of the folder that they stand in: "/" for the root, "/a/b" below.
  [[nodiscard]] const std::string& place() const { return place_; }

  [[nodiscard]] const std::vector<ListColumn>& columns() const { return columns_; }
  [[nodiscard]] std::size_t columnCount() const { return columns_.size(); }
  [[nodiscard]] std::size_t rowCount() const { return rows_ ? rows_->count() : 0; }
  /// @pre row < rowCount().
  [[nodiscard]] RowIcon icon(std::size_t row) const { return rows_->icon(row); }
  /// UTF-8; valid as long as the model. @pre row < rowCount().
  [[nodiscard]] std::string_view displayName(std::size_t row) const { return rows_->displayName(row); }
  /// UTF-8; valid as long as the model. @pre row < rowCount(), column < columnCount().
  [[nodiscard]] std::string_view cell(std::size_t row, std::size_t column) const;

 private:
  std::vector<ListColumn> columns_;
  std::vector<std::optional<ListRows::NameId>> attributes_;
  std::shared_ptr<const ListRows> rows_;
  std::string place_;
};

}  // namespace vlclientui::engine
