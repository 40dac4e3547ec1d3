#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "engine/Surface.h"
#include "widgets/FieldView.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::widgets {

class PageView;
class RowListView;

/// The surface of one engine on Qt. In a window with a slot for it the surface fills the slot and follows its
/// size; elsewhere it takes the place that it was given. Its window may be destroyed first.
class QtSurface final : public engine::Surface {
 public:
  QtSurface(std::shared_ptr<QtToolkit> toolkit, std::weak_ptr<engine::SurfaceListener> listener);
  ~QtSurface() override;

  void attach(WindowHandle parent, const std::string& title) override;
  void detach() override;
  void setGeometry(const engine::PixelRectangle& place) override;
  void setVisible(bool visible) override;
  void setPageScrollBar(bool shown) override;
  void showList(std::shared_ptr<const engine::ListModel> list) override;
  void updateList(std::shared_ptr<const engine::ListModel> list) override;
  void showForm(std::shared_ptr<const engine::FormModel> form) override;
  void updateForm(std::shared_ptr<const engine::FormModel> form) override;
  void showTree(std::shared_ptr<engine::TreeModel> tree) override;
  void runWindow(const std::string& caption, engine::WindowFrame frame,
                 std::shared_ptr<const engine::FormModel> form) override;

 private:
  using Send =
      std::function<void(QWidget* window, const std::function<void(engine::SurfaceListener&)>& news)>;

  [[nodiscard]] Send sender() const;
  [[nodiscard]] PageListener pageListener() const;
  QWidget& frame();
  void show(QWidget* content);
  void moveFocusOut();
  void applyPlace();
  void applyTabOrder();
  void applyScrollBar();

  std::shared_ptr<QtToolkit> toolkit_;
  std::weak_ptr<engine::SurfaceListener> listener_;
  QPointer<QWidget> frame_;
  QPointer<QWidget> content_;  ///< the list, the page or the tree
  QPointer<RowListView> list_;
  QPointer<PageView> page_;  ///< also in a window of its own, while that is open
  /// Set while the engine changes what is shown, so that nothing that follows counts as a person's input.
  std::shared_ptr<bool> quiet_ = std::make_shared<bool>(false);
  engine::PixelRectangle place_;
  bool visible_ = false;
  bool pageScrollBar_ = true;
};

class QtSurfaceFactory final : public engine::SurfaceFactory {
 public:
  explicit QtSurfaceFactory(std::shared_ptr<QtToolkit> toolkit);
  [[nodiscard]] std::unique_ptr<engine::Surface> createSurface(
      std::weak_ptr<engine::SurfaceListener> listener) override;

 private:
  std::shared_ptr<QtToolkit> toolkit_;
};

}  // namespace vlclientui::widgets
