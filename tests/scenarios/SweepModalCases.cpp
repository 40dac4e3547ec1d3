// The modal windows: the host's show, a walk through the window, OK.

#include <utility>

#include "export/ExportDialog.h"
#include "scenarios/SweepCases.h"
#include "selection/ImageServicesDialog.h"

namespace vlclientui::test {

namespace {

/// An act of a person in a window of this kind.
template <class Window>
std::function<void(Form&)> in(std::function<void(typename Window::Controls&)> act) {
  return [act = std::move(act)](Form& form) { act(dynamic_cast<Window&>(form).controls()); };
}

/// A dialog object with one modal window.
template <class Dialog>
class ModalCase : public SweepCase {
 public:
  explicit ModalCase(SweepWorld& world) : world_(world), dialog_(std::make_shared<Dialog>()) {}

  void close() override {
    if (const auto open = window()) open->userCloses();
  }
  void release() override { dialog_.reset(); }

 protected:
  SweepWorld& world_;
  std::shared_ptr<Dialog> dialog_;
};

class SelectionCase final : public ModalCase<ImageServicesDialog> {
 public:
  explicit SelectionCase(SweepWorld& world) : ModalCase(world) {
    queryInterface<IImageServicesDialog>(dialog_)->Init("", world_.client);
  }

  void run() override {
    world_.visit(acts());
    static_cast<void>(queryInterface<IImageServicesDialog>(dialog_)->ShowDialogEx(""));
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window().shared_from_this() : nullptr; }
  std::string showAgain() override {
    const auto facet = queryInterface<IImageServicesDialog>(dialog_);
    return facet->ShowDialog() ? std::string() : facet->Status();
  }

 private:
  [[nodiscard]] Acts acts() const {
    using Window = ImageServicesDialogForm;
    const StrikingPlexaFactory& engines = *world_.engines;
    const auto row = [&engines](const char* event, const char* item, const char* parent) {
      return [&engines, raised = PlexaEvent{event, "", parent, item, 0}](Form&) { engines.raise(raised); };
    };
    return {row("DblClick", "Roads", "/"),
            row("Click", "West", "/Roads"),
            row("DblClick", "West", "/Roads"),
            in<Window>([](auto& all) { all.ImageServicesControl1.Info.userClicks(); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.Browse.userClicks(); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.uiBtnBrowseServer.userClicks(); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.uiTxtBoxServerName.userSelects(0); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.ListBox.userSelects({0}); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.Remove.userClicks(); }),
            row("DblClick", "Relief", "/"),
            in<Window>([](auto& all) { all.uibtnok.userClicks(); })};
  }
};

class ExportCase final : public ModalCase<ExportDialog> {
 public:
  explicit ExportCase(SweepWorld& world) : ModalCase(world) {
    dialog_->IExportImageDialog_Init("", nullptr, world_.service);
  }

  void run() override {
    world_.visit(acts());
    dialog_->iExportImageDialog_ShowModalDialogEx("");
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window().shared_from_this() : nullptr; }
  std::string showAgain() override {
    threadState().exportDialogStatus.clear();
    dialog_->iExportImageDialog_ShowModalDialog();
    return threadState().exportDialogStatus;
  }

 private:
  static Acts acts() {
    using Window = ExportDialogForm;
    return {in<Window>([](auto& all) { all.ExportControl1.uiTxtCols.userFocuses(); }),
            in<Window>([](auto& all) { all.ExportControl1.uiTxtCols.userTypes("many"); }),
            in<Window>([](auto& all) { all.ExportControl1.uiTxtRows.userFocuses(); }),
            in<Window>([](auto& all) { all.ExportControl1.MainCombo.userSelects(1); }),
            in<Window>([](auto& all) { all.ExportControl1.FormatCombo.userSelects(1); }),
            in<Window>([](auto& all) { all.ExportControl1.OpenFile.userClicks(); }),
            in<Window>([](auto& all) { all.Command1.userClicks(); })};
  }
};

class OneWindowCase final : public ModalCase<ServicePropertiesDialog> {
 public:
  explicit OneWindowCase(SweepWorld& world) : ModalCase(world) {
    queryInterface<IServicePropertiesDialog>(dialog_)->Init("", nullptr, world_.service);
  }

  void run() override {
    world_.visit(acts());
    static_cast<void>(dialog_->ShowPropertiesModalDialog());
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window() : nullptr; }
  std::string showAgain() override {
    return dialog_->ShowPropertiesModalDialog() >= 0 ? std::string() : threadState().gStatus;
  }

 private:
  [[nodiscard]] Acts acts() const {
    using Window = ServicePropertiesDialogForm;
    const StrikingPlexaFactory& engines = *world_.engines;
    Acts acts{[&engines](Form&) {
                engines.raise({"Change", "MosaicMethod", "Viewpoint", "", 0});
              },
              in<Window>([](auto& all) { all.SaveAs.userClicks(); }),
              in<Window>([](auto& all) { all.myTab.userSelects(1); })};
    for (const auto& act : metadataWalk()) {
      acts.push_back(in<Window>([act](auto& all) { act(all.metadata); }));
    }
    acts.push_back(in<Window>([](auto& all) { all.myTab.userSelects(0); }));
    acts.push_back(in<Window>([](auto& all) { all.uibtnok.userClicks(); }));
    return acts;
  }
};

class ViewPointDialogCase final : public ModalCase<ServicePropertiesDialog> {
 public:
  explicit ViewPointDialogCase(SweepWorld& world) : ModalCase(world) {
    queryInterface<IServicePropertiesDialog>(dialog_)->Init("", nullptr, world_.service);
  }

  void run() override {
    world_.visit({in<ViewPointSteering>([](auto& all) { all.MoveUp.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.MoveUp.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.Center.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.uiTxtBoxX.userTypes("12"); }),
                  in<ViewPointSteering>([](auto& all) { all.uibtnok->userClicks(); })});
    dialog_->ShowViewPointModalDialog();
  }
  std::shared_ptr<Form> window() override {
    return dialog_ ? dialog_->viewPointDialog().shared_from_this() : nullptr;
  }
  std::string showAgain() override {
    return dialog_->ShowViewPointModalDialog() ? std::string() : threadState().gStatus;
  }
};

}  // namespace

std::vector<SweepScenario> modalScenarios() {
  return {
      {"selection", [](SweepWorld& world) { return std::make_unique<SelectionCase>(world); }},
      {"export", [](SweepWorld& world) { return std::make_unique<ExportCase>(world); }},
      {"one window", [](SweepWorld& world) { return std::make_unique<OneWindowCase>(world); }},
      {"viewpoint dialog", [](SweepWorld& world) { return std::make_unique<ViewPointDialogCase>(world); }}};
}

}  // namespace vlclientui::test
