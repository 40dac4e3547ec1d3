#include "TwinSurfaces.h"

#include <functional>
#include <utility>

namespace vlclientui::python {
namespace {

using engine::FormModel;
using engine::ListModel;

class TwinSurface final : public engine::Surface {
 public:
  TwinSurface(std::unique_ptr<Surface> shown, std::unique_ptr<Surface> twin, WindowActs acts)
      : shown_(std::move(shown)), twin_(std::move(twin)), acts_(std::move(acts)) {}

  void attach(WindowHandle parent, const std::string& title) override {
    onBoth([&](Surface& each) { each.attach(parent, title); });
  }
  void detach() override { onBoth(&Surface::detach); }
  void setGeometry(const engine::PixelRectangle& place) override {
    onBoth([&](Surface& each) { each.setGeometry(place); });
  }
  void setVisible(bool visible) override {
    onBoth([&](Surface& each) { each.setVisible(visible); });
  }
  void setPageScrollBar(bool shown) override {
    onBoth([&](Surface& each) { each.setPageScrollBar(shown); });
  }
  void showList(std::shared_ptr<const ListModel> list) override {
    onBoth([&](Surface& each) { each.showList(list); });
  }
  void updateList(std::shared_ptr<const ListModel> list) override {
    onBoth([&](Surface& each) { each.updateList(list); });
  }
  void showForm(std::shared_ptr<const FormModel> form) override {
    onBoth([&](Surface& each) { each.showForm(form); });
  }
  void updateForm(std::shared_ptr<const FormModel> form) override {
    onBoth([&](Surface& each) { each.updateForm(form); });
  }
  void showTree(std::shared_ptr<engine::TreeModel> tree) override {
    onBoth([&](Surface& each) { each.showTree(tree); });
  }

  void runWindow(const std::string& caption, engine::WindowFrame frame,
                 std::shared_ptr<const FormModel> form) override {
    const bool isAwaited = acts_.awaitsWindow();
    if (isAwaited)
      acts_.inNextWindow([twin = std::weak_ptr(twin_), caption, frame, form] {
        if (const auto living = twin.lock()) living->runWindow(caption, frame, form);
      });
    shown_->runWindow(caption, frame, form);
  }

 private:
  template <class Change>
  void onBoth(Change change) {
    std::invoke(change, *shown_);
    std::invoke(change, *twin_);
  }

  std::unique_ptr<Surface> shown_;
  std::shared_ptr<Surface> twin_;
  WindowActs acts_;
};

}  // namespace

std::unique_ptr<engine::Surface> TwinSurfaceFactory::createSurface(
    std::weak_ptr<engine::SurfaceListener> listener) {
  return std::make_unique<TwinSurface>(shown_->createSurface(listener), twins_->createSurface(listener),
                                       acts_);
}

}  // namespace vlclientui::python
