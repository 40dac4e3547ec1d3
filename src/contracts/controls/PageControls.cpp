#include "contracts/controls/PageControls.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/EntryNames.h"

namespace vlclientui {

namespace {
[[noreturn]] void failIndex(const Control& control) {
  throw RuntimeFailure("No such item in " + control.name(), FailureKind::InvalidIndex);
}
}  // namespace

Frame::Frame(ControlContainer& container, std::string name, std::string caption)
    : Control(&container, std::move(name), ControlKind::Frame), caption_(std::move(caption)) {}

TabStrip::TabStrip(ControlContainer& container, std::string name, std::vector<std::string> captions)
    : Control(&container, std::move(name), ControlKind::TabStrip), captions_(std::move(captions)) {
  if (!captions_.empty()) selected_ = 0;
}

const std::string& TabStrip::selectedCaption() const {
  if (!selected_) failMissingObject("the selected tab of " + name());
  return captions_[*selected_];
}

void TabStrip::setCaption(std::size_t index, std::string caption) {
  if (index >= count()) failIndex(*this);
  captions_[index] = std::move(caption);
  changed.raise(Aspect::Entries);
}

void TabStrip::removeTab(std::size_t index) {
  if (index >= count()) failIndex(*this);
  captions_.erase(captions_.begin() + static_cast<std::ptrdiff_t>(index));
  if (captions_.empty()) {
    selected_.reset();
  } else if (*selected_ == index) {
    selected_ = 0;
  } else if (index < *selected_) {
    --*selected_;
  }
  changed.raise(Aspect::Entries);
}

void TabStrip::userSelects(std::size_t index) {
  if (!acceptsInput() || index >= count()) return;
  tell(Operation::Kind::Choose, entryName(captions_, index));
  act([this, index] {
    selected_ = index;
    changed.raise(Aspect::Selection);
    click.raise();
  });
}

TreeView::TreeView(ControlContainer& container, std::string name)
    : Control(&container, std::move(name), ControlKind::TreeView) {}

void TreeView::addNode(const std::string& parentKey, const std::string& key, std::string text) {
  if (key.empty() || hasNode(key) || (!parentKey.empty() && !hasNode(parentKey))) failIndex(*this);
  nodes_.push_back({key, parentKey, std::move(text)});
  keys_.insert(key);
  changed.raise(Aspect::Entries);
}

void TreeView::clear() {
  nodes_.clear();
  keys_.clear();
  selectedKey_.clear();
  changed.raise(Aspect::Entries);
}

void TreeView::markSelected(const std::string& key) {
  if (!hasNode(key)) failIndex(*this);
  selectedKey_ = key;
  changed.raise(Aspect::Selection);
}

void TreeView::userSelects(const std::string& key) {
  if (!acceptsInput() || !hasNode(key)) return;
  tell(Operation::Kind::Choose, key);
  act([this, &key] {
    markSelected(key);
    nodeClick.raise();
  });
}

ReportList::ReportList(ControlContainer& container, std::string name, std::vector<std::string> columns)
    : Control(&container, std::move(name), ControlKind::ReportList), columns_(std::move(columns)) {}

void ReportList::addRow(Row row) {
  rows_.push_back(std::move(row));
  changed.raise(Aspect::Entries);
}

void ReportList::clear() {
  rows_.clear();
  selected_.reset();
  changed.raise(Aspect::Entries);
}

std::vector<std::string> ReportList::firstCells() const {
  std::vector<std::string> cells;
  for (const auto& row : rows_) cells.push_back(row.empty() ? std::string() : row.front());
  return cells;
}

void ReportList::userSelects(std::size_t row) {
  if (!acceptsInput() || row >= rows_.size()) return;
  tell(Operation::Kind::Choose, entryName(firstCells(), row));
  act([this, row] {
    selected_ = row;
    changed.raise(Aspect::Selection);
    click.raise();
  });
}

}  // namespace vlclientui
