#include "headless/HeadlessSurface.h"

#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::headless {

HeadlessSurface::HeadlessSurface(std::shared_ptr<HeadlessSurfaceFactory> factory,
                                 std::weak_ptr<engine::SurfaceListener> listener)
    : factory_(std::move(factory)), listener_(std::move(listener)) {
  factory_->add(*this);
}

HeadlessSurface::~HeadlessSurface() {
  detach();
  factory_->remove(*this);
}

const engine::ListModel& HeadlessSurface::shownList() const {
  if (!list_) failMissingObject("the list of the surface");
  return *list_;
}

void HeadlessSurface::checkAttached() const {
  if (window_ == 0 && !runsWindow_) failMissingObject("the window of the surface");
}

void HeadlessSurface::checkRow(std::size_t row) const {
  if (row >= shownList().rowCount()) {
    throw RuntimeFailure("The list has no row " + std::to_string(row), FailureKind::InvalidIndex);
  }
}

std::size_t HeadlessSurface::rowOf(std::string_view displayName) const {
  const auto& list = shownList();
  std::size_t row = 0;
  while (row < list.rowCount() && list.displayName(row) != displayName) ++row;
  if (row == list.rowCount()) {
    throw RuntimeFailure("The list has no row '" + std::string(displayName) + "'", FailureKind::InvalidIndex);
  }
  return row;
}

std::vector<std::string> HeadlessSurface::rowNames() const {
  std::vector<std::string> names;
  for (std::size_t row = 0; row < shownList().rowCount(); ++row) names.emplace_back(list_->displayName(row));
  return names;
}

std::vector<std::string> HeadlessSurface::rowCells(std::string_view displayName) const {
  const auto row = rowOf(displayName);
  std::vector<std::string> cells;
  for (std::size_t column = 0; column < list_->columnCount(); ++column) {
    cells.emplace_back(list_->cell(row, column));
  }
  return cells;
}

void HeadlessSurface::userClicksRow(std::size_t row) {
  checkAttached();
  checkRow(row);
  selectedRow_ = row;
  if (const auto listener = listener_.lock()) listener->rowClicked(row);
}

// The handler of the click may have replaced the rows or destroyed the surface.
void HeadlessSurface::userDoubleClicksRow(std::size_t row) {
  const auto keptAlive = listener_.lock();
  const auto clicked = list_;
  userClicksRow(row);
  if (keptAlive && window_ != 0 && list_ == clicked) keptAlive->rowActivated(row);
}

void HeadlessSurface::userPressesEnter() {
  checkAttached();
  if (!selectedRow_) return;
  if (const auto listener = listener_.lock()) listener->rowActivated(*selectedRow_);
}

void HeadlessSurface::userPressesBackspace() {
  checkAttached();
  if (const auto listener = listener_.lock()) listener->backspacePressed();
}

void HeadlessSurface::attach(WindowHandle parent, const std::string& title) {
  detach();
  window_ = factory_->registerWindow(parent, title);
  parent_ = parent;
  title_ = title;
}

void HeadlessSurface::detach() {
  if (window_ == 0) return;
  factory_->unregisterWindow(std::exchange(window_, 0));
  parent_ = 0;
  focusedField_.clear();
}

void HeadlessSurface::showNothing() {
  list_.reset();
  form_.reset();
  tree_.reset();
  selectedRow_.reset();
  focusedField_.clear();
}

void HeadlessSurface::showList(std::shared_ptr<const engine::ListModel> list) {
  showNothing();
  updateList(std::move(list));
}

void HeadlessSurface::updateList(std::shared_ptr<const engine::ListModel> list) {
  list_ = std::move(list);
  selectedRow_.reset();
}

void HeadlessSurface::showForm(std::shared_ptr<const engine::FormModel> form) {
  showNothing();
  form_ = std::move(form);
}

void HeadlessSurface::updateForm(std::shared_ptr<const engine::FormModel> form) {
  form_ = std::move(form);
  const auto* focused = form_->fieldAt(focusedField_);
  if (focused && !(focused->visible && focused->enabled)) focusedField_.clear();
}

void HeadlessSurface::showTree(std::shared_ptr<engine::TreeModel> tree) {
  showNothing();
  tree_ = std::move(tree);
}

void HeadlessSurface::runWindow(const std::string& caption, engine::WindowFrame frame,
                                std::shared_ptr<const engine::FormModel> form) {
  showForm(form);
  runsWindow_ = true;
  factory_->runWindow({caption, frame, std::move(form), this});
  runsWindow_ = false;
  showNothing();
}

HeadlessSurfaceFactory::HeadlessSurfaceFactory(ChildWindowHooks hooks) : hooks_(std::move(hooks)) {}

HeadlessSurface* HeadlessSurfaceFactory::surfaceIn(WindowHandle parent) const {
  const auto found = std::find_if(surfaces_.rbegin(), surfaces_.rend(),
                                  [parent](const auto* surface) { return surface->parent() == parent; });
  return found == surfaces_.rend() ? nullptr : *found;
}

std::unique_ptr<engine::Surface> HeadlessSurfaceFactory::createSurface(
    std::weak_ptr<engine::SurfaceListener> listener) {
  return std::make_unique<HeadlessSurface>(shared_from_this(), std::move(listener));
}

WindowHandle HeadlessSurfaceFactory::registerWindow(WindowHandle parent, const std::string& title) {
  const auto window = hooks_.registerChildWindow ? hooks_.registerChildWindow(parent, title) : ++lastWindow_;
  if (window == 0) failMissingObject("the window that holds the surface");
  return window;
}

void HeadlessSurfaceFactory::unregisterWindow(WindowHandle window) {
  if (hooks_.unregisterChildWindow) hooks_.unregisterChildWindow(window);
}

void HeadlessSurfaceFactory::runWindow(HeadlessWindow window) {
  windows_.push_back(window);
  if (script_) script_(window);
}

}  // namespace vlclientui::headless
