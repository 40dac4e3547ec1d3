#include "engine/ListModel.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "documents/ParsedDocument.h"

namespace vlclientui::engine {
namespace {

constexpr double defaultWidth = 8.0;

XmlNodePtr rootNamed(const XmlDocument& document, std::string_view name) {
  auto root = document.documentElement();
  return root && root->name() == name ? root : nullptr;
}

std::vector<XmlNodePtr> elementsBelow(const XmlNode& node) {
  auto children = node.childNodes();
  std::erase_if(children, [](const auto& child) { return child->kind() != XmlNodeKind::Element; });
  return children;
}

std::string titleOf(std::string name) {
  std::ranges::replace(name, '_', ' ');
  return name;
}

std::optional<double> parseWidth(const std::optional<std::string>& text) {
  if (!text) return defaultWidth;
  double width = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), width);
  const bool whole = error == std::errc{} && end == text->data() + text->size();
  return whole && std::isfinite(width) && width > 0 ? std::optional(width) : std::nullopt;
}

RowIcon iconOf(std::string_view text) {
  if (text == "fldr") return RowIcon::Folder;
  if (text == "VLSERVICE") return RowIcon::Service;
  return RowIcon::Message;
}

}  // namespace

std::optional<std::vector<ListColumn>> parseListFields(const XmlService& xml, std::string_view text) {
  const auto document = xml.createDocument();
  loadOrStayEmpty(*document, text);
  const auto root = rootNamed(*document, "list_fields");
  if (!root) {
    endSilently("the columns are no list_fields");
    return std::nullopt;
  }

  std::vector<ListColumn> columns;
  for (const auto& element : elementsBelow(*root)) {
    const auto width = parseWidth(element->getNamedItem("width"));
    if (!width) {
      endSilently("the column '" + element->name() + "' has no width");
      return std::nullopt;
    }
    columns.push_back({element->name(), titleOf(element->name()), *width});
  }
  return columns;
}

std::shared_ptr<const ListRows> ListRows::parse(const XmlService& xml, std::string_view text) {
  const auto document = xml.createDocument();
  loadOrStayEmpty(*document, text);
  const auto root = rootNamed(*document, "list_values");
  if (!root) {
    endSilently("the rows are no list_values");
    return nullptr;
  }

  auto rows = std::make_shared<ListRows>();
  for (const auto& element : elementsBelow(*root)) rows->addRow(*element);
  return rows;
}

// Each row starts with its display name, so finding it takes no search.
void ListRows::addRow(const XmlNode& element) {
  const auto attributes = element.attributes();
  Row row{cells_.size(), RowIcon::Message};
  const auto shown =
      std::ranges::find(attributes, "displayName", &std::pair<std::string, std::string>::first);
  addCell("displayName", shown == attributes.end() ? std::string() : shown->second);
  for (const auto& [name, value] : attributes) {
    if (name == "icon") {
      row.icon = iconOf(value);
    } else if (name != "displayName") {
      addCell(name, value);
    }
  }
  rows_.push_back(row);
}

void ListRows::addCell(const std::string& name, const std::string& value) {
  cells_.push_back({intern(name), pool_.size()});
  pool_ += value;
}

ListRows::NameId ListRows::intern(const std::string& name) {
  return names_.try_emplace(name, static_cast<NameId>(names_.size())).first->second;
}

std::string_view ListRows::text(std::size_t cell) const {
  const auto begin = cells_[cell].begin;
  const auto end = cell + 1 < cells_.size() ? cells_[cell + 1].begin : pool_.size();
  return std::string_view(pool_).substr(begin, end - begin);
}

std::string_view ListRows::displayName(std::size_t row) const { return text(rows_[row].firstCell); }

std::optional<ListRows::NameId> ListRows::findName(std::string_view attribute) const {
  const auto found = names_.find(std::string(attribute));
  return found == names_.end() ? std::nullopt : std::optional(found->second);
}

std::string_view ListRows::value(std::size_t row, NameId attribute) const {
  const auto end = row + 1 < rows_.size() ? rows_[row + 1].firstCell : cells_.size();
  for (auto cell = rows_[row].firstCell; cell < end; ++cell) {
    if (cells_[cell].name == attribute) return text(cell);
  }
  return {};
}

ListModel::ListModel(std::vector<ListColumn> columns, std::shared_ptr<const ListRows> rows, std::string place)
    : columns_(std::move(columns)), rows_(std::move(rows)), place_(std::move(place)) {
  if (columns_.empty()) columns_.push_back({"Name", "Name", defaultWidth});
  for (const auto& column : columns_) {
    attributes_.push_back(rows_ ? rows_->findName(column.name) : std::nullopt);
  }
}

std::string_view ListModel::cell(std::size_t row, std::size_t column) const {
  if (column == 0) return displayName(row);
  const auto& attribute = attributes_[column];
  return attribute ? rows_->value(row, *attribute) : std::string_view();
}

}  // namespace vlclientui::engine
