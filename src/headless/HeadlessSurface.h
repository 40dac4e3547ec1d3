#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Surface.h"

/// Form engine surfaces in memory: tests read what they show, and scripts act on them as a person would.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::headless {

class HeadlessSurfaceFactory;

class HeadlessSurface final : public engine::Surface {
 public:
  HeadlessSurface(std::shared_ptr<HeadlessSurfaceFactory> factory,
                  std::weak_ptr<engine::SurfaceListener> listener);
  ~HeadlessSurface() override;

  // What is shown.
  [[nodiscard]] WindowHandle parent() const { return parent_; }
  /// The surface's own window; 0 while it is not attached.
  [[nodiscard]] WindowHandle window() const { return window_; }
  [[nodiscard]] const std::string& title() const { return title_; }
  [[nodiscard]] const engine::PixelRectangle& geometry() const { return geometry_; }
  [[nodiscard]] bool visible() const { return visible_; }
  [[nodiscard]] bool pageScrollBar() const { return pageScrollBar_; }
  /// Null while no list is shown.
  [[nodiscard]] std::shared_ptr<const engine::ListModel> list() const { return list_; }
  /// Null while no page is shown.
  [[nodiscard]] std::shared_ptr<const engine::FormModel> form() const { return form_; }
  /// Null while no tree is shown.
  [[nodiscard]] std::shared_ptr<engine::TreeModel> tree() const { return tree_; }
  /// The names in the first column, in row order.
  [[nodiscard]] std::vector<std::string> rowNames() const;
  /// All cells of a row. @throws RuntimeFailure when there is no such row.
  [[nodiscard]] std::vector<std::string> rowCells(std::string_view displayName) const;
  /// The row clicked last; nothing after new rows.
  [[nodiscard]] std::optional<std::size_t> selectedRow() const { return selectedRow_; }

  // What a person does on a list. A name means the first row that has it. A handler may destroy the surface.
  // @throws RuntimeFailure when the surface is not attached, shows no list, or the list has no such row.
  void userClicksRow(std::size_t row);
  void userClicksRow(std::string_view displayName) { userClicksRow(rowOf(displayName)); }
  /// Includes the click that begins a double click.
  void userDoubleClicksRow(std::size_t row);
  void userDoubleClicksRow(std::string_view displayName) { userDoubleClicksRow(rowOf(displayName)); }
  /// On the selected row; ignored without one.
  void userPressesEnter();
  void userPressesBackspace();

  // What a person does on a page. A field is named by its element or, where names repeat, by its path; the
  // first match counts. A handler may destroy the surface. @throws RuntimeFailure, with a readable text, when
  // the surface is not attached, shows no page, or the page has no such field or does not let a person change
  // it.
  //
  // Replaces the text of a field and stays in it. In a choice or a yes-or-no it picks, by label or by the
  // data's value. @throws RuntimeFailure also when there is no such choice.
  void userTypes(std::string_view field, const std::string& text);
  /// Moves the focus out of all fields. Ignored while none has it.
  void userLeavesField();
  /// Types or picks, then leaves. @returns the page's complaint; empty when it takes the value.
  std::string userSetsField(std::string_view field, const std::string& text);
  void userPressesButton(std::string_view field);
  /// In the field with the focus, if one has it. @returns whether there was any help.
  bool userPressesF1();

  /// The shown text of a field. @throws RuntimeFailure when the page has no such field.
  [[nodiscard]] std::string fieldText(std::string_view field) const { return shownField(field).value; }
  /// The complaint beside a field; empty without one. @throws RuntimeFailure as fieldText.
  [[nodiscard]] std::string complaint(std::string_view field) const { return shownField(field).complaint; }
  /// Path of the field with the focus; empty for none.
  [[nodiscard]] const std::string& focusedField() const { return focusedField_; }

  void attach(WindowHandle parent, const std::string& title) override;
  void detach() override;
  void setGeometry(const engine::PixelRectangle& place) override { geometry_ = place; }
  void setVisible(bool visible) override { visible_ = visible; }
  void setPageScrollBar(bool shown) override { pageScrollBar_ = shown; }
  void showList(std::shared_ptr<const engine::ListModel> list) override;
  void updateList(std::shared_ptr<const engine::ListModel> list) override;
  void showForm(std::shared_ptr<const engine::FormModel> form) override;
  void updateForm(std::shared_ptr<const engine::FormModel> form) override;
  void showTree(std::shared_ptr<engine::TreeModel> tree) override;
  void runWindow(const std::string& caption, engine::WindowFrame frame,
                 std::shared_ptr<const engine::FormModel> form) override;

 private:
  [[nodiscard]] const engine::ListModel& shownList() const;
  [[nodiscard]] std::size_t rowOf(std::string_view displayName) const;
  [[nodiscard]] const engine::FormField& shownField(std::string_view name) const;
  [[nodiscard]] const engine::FormField& reachableField(std::string_view name) const;
  void moveFocus(const std::string& path);
  void showNothing();
  void checkAttached() const;
  void checkRow(std::size_t row) const;

  std::shared_ptr<HeadlessSurfaceFactory> factory_;
  std::weak_ptr<engine::SurfaceListener> listener_;
  WindowHandle parent_ = 0;
  WindowHandle window_ = 0;
  std::string title_;
  engine::PixelRectangle geometry_;
  bool visible_ = false;
  bool pageScrollBar_ = true;
  std::shared_ptr<const engine::ListModel> list_;
  std::shared_ptr<const engine::FormModel> form_;
  std::shared_ptr<engine::TreeModel> tree_;
  std::optional<std::size_t> selectedRow_;
  std::string focusedField_;
  bool runsWindow_ = false;
};

/// A separate window, as it was shown.
struct HeadlessWindow {
  std::string caption;
  engine::WindowFrame frame = engine::WindowFrame::Modal;
  std::shared_ptr<const engine::FormModel> form;
  /// Where a script acts on the page while the window is open.
  HeadlessSurface* surface = nullptr;
};

/// How a toolkit counts surfaces among the child windows of its windows.
struct ChildWindowHooks {
  /// 0 for an unknown parent.
  std::function<WindowHandle(WindowHandle parent, const std::string& title)> registerChildWindow;
  std::function<void(WindowHandle window)> unregisterChildWindow;
};

/// Makes surfaces and keeps a list of the living ones.
class HeadlessSurfaceFactory final : public engine::SurfaceFactory,
                                     public std::enable_shared_from_this<HeadlessSurfaceFactory> {
 public:
  /// Without hooks the surfaces number their windows themselves, from 1.
  explicit HeadlessSurfaceFactory(ChildWindowHooks hooks = {});

  void setChildWindowHooks(ChildWindowHooks hooks) { hooks_ = std::move(hooks); }
  /// Run while a separate window is open; the window closes when it returns.
  void setWindowScript(std::function<void(const HeadlessWindow&)> script) { script_ = std::move(script); }

  /// The separate windows shown so far.
  [[nodiscard]] const std::vector<HeadlessWindow>& windows() const { return windows_; }
  /// The living surfaces, oldest first.
  [[nodiscard]] const std::vector<HeadlessSurface*>& surfaces() const { return surfaces_; }
  /// The surface last put into that window; null when it holds none.
  [[nodiscard]] HeadlessSurface* surfaceIn(WindowHandle parent) const;

  [[nodiscard]] std::unique_ptr<engine::Surface> createSurface(
      std::weak_ptr<engine::SurfaceListener> listener) override;

 private:
  friend class HeadlessSurface;

  void add(HeadlessSurface& surface) { surfaces_.push_back(&surface); }
  void remove(HeadlessSurface& surface) { std::erase(surfaces_, &surface); }
  WindowHandle registerWindow(WindowHandle parent, const std::string& title);
  void unregisterWindow(WindowHandle window);
  void runWindow(HeadlessWindow window);

  ChildWindowHooks hooks_;
  std::function<void(const HeadlessWindow&)> script_;
  std::vector<HeadlessWindow> windows_;
  std::vector<HeadlessSurface*> surfaces_;
  WindowHandle lastWindow_ = 0;
};

}  // namespace vlclientui::headless
#pragma GCC visibility pop
