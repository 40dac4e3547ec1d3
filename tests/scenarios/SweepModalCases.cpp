// The modal windows: the host's show, a walk through the window, OK.

#include <utility>

#include "export/Envelope.h"
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

/// Ctrl+F1 of a person.
void asksForHelp(Control& control) {
  control.userFocuses();
  control.userPresses(keyCode::f1, keyModifier::control);
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

/// The add-service window of a host that has a client of either generation, or none.
template <class Interface>
class SelectionCase final : public ModalCase<ImageServicesDialog> {
 public:
  SelectionCase(SweepWorld& world, ObjectPtr client) : ModalCase(world), client_(std::move(client)) {}

  void run() override {
    world_.visit(acts());
    const auto facet = queryInterface<Interface>(dialog_);
    facet->Init("", client_);
    static_cast<void>(facet->ShowDialogEx(extent));
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window().shared_from_this() : nullptr; }
  std::string showAgain() override {
    const auto facet = queryInterface<Interface>(dialog_);
    return facet->ShowDialog() ? std::string() : facet->Status();
  }
  std::string told() override {
    const auto facet = queryInterface<Interface>(dialog_);
    return facet->Status() + "|" + facet->GetSelectedServices();
  }

 private:
  static constexpr const char* extent =
      "<AddImageServiceDialog><CustomEnvelope><XMin>0</XMin><XMax>9</XMax><YMin>0</YMin><YMax>9</YMax>"
      "</CustomEnvelope></AddImageServiceDialog>";

  [[nodiscard]] Acts acts() const {
    using Window = ImageServicesDialogForm;
    const StrikingPlexaFactory& engines = *world_.engines;
    const auto row = [&engines](const char* event, const char* item, const char* parent) {
      return [&engines, raised = PlexaEvent{event, "", parent, item, 0}](Form&) { engines.raise(raised); };
    };
    const auto silence = [&world = world_](Form&) { world.server->answer.clear(); };
    return {row("DblClick", "Roads", "/"),
            row("Click", "West", "/Roads"),
            row("DblClick", "West", "/Roads"),
            in<Window>([](auto& all) { all.ImageServicesControl1.Info.userClicks(); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.Browse.userClicks(); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.uiBtnBrowseServer.userClicks(); }),
            in<Window>([](auto& all) {
              auto& servers = all.ImageServicesControl1.uiTxtBoxServerName;
              if (servers.count() > 0) servers.userSelects(0);
            }),
            in<Window>([](auto& all) { all.ImageServicesControl1.ListBox.userSelects({0}); }),
            in<Window>([](auto& all) { all.ImageServicesControl1.Remove.userClicks(); }),
            row("DblClick", "Relief", "/"),
            in<Window>([](auto& all) { asksForHelp(all.ImageServicesControl1.Browse); }),
            silence,
            in<Window>([](auto& all) { all.ImageServicesControl1.Check1.userClicks(); }),
            in<Window>([](auto& all) { all.uibtnok.userClicks(); })};
  }

  ObjectPtr client_;
};

class ExportCase final : public ModalCase<ExportDialog> {
 public:
  ExportCase(SweepWorld& world, Acts acts) : ModalCase(world), acts_(std::move(acts)) {}
  ExportCase(const ExportCase&) = delete;
  ExportCase& operator=(const ExportCase&) = delete;
  /// The extents of a host are one set for the whole process.
  ~ExportCase() override { customEnvelopes() = {}; }

  void run() override {
    world_.visit(acts_);
    dialog_->IExportImageDialog_Init("", nullptr, world_.service);
    if (const auto held = dialog_) held->iExportImageDialog_ShowModalDialogEx(extents);
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window().shared_from_this() : nullptr; }
  std::string showAgain() override {
    threadState().exportDialogStatus.clear();
    dialog_->iExportImageDialog_ShowModalDialog();
    return threadState().exportDialogStatus;
  }
  std::string told() override {
    return dialog_->iExportImageDialog_Status() + "|" + dialog_->iExportImageDialog_GetUpdatedProperties();
  }

 private:
  static constexpr const char* extents =
      "<Vorlane><Client><ExportImageDialog><CustomEnvelope><Description>Valley</Description><XMin>1</XMin>"
      "<XMax>9</XMax><YMin>1</YMin><YMax>9</YMax></CustomEnvelope></ExportImageDialog></Client></Vorlane>";

  Acts acts_;
};

using ExportWindow = ExportDialogForm;

Acts exportActs() {
  return {in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userFocuses(); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userTypes("many"); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtRows.userFocuses(); }),
          in<ExportWindow>([](auto& all) {
            // Without a service there are no extents.
            if (all.ExportControl1.MainCombo.count() > 1) all.ExportControl1.MainCombo.userSelects(1);
          }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.FormatCombo.userSelects(1); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.OpenFile.userClicks(); }),
          in<ExportWindow>([](auto& all) { asksForHelp(all.ExportControl1.uiTxtCols); }),
          in<ExportWindow>([](auto& all) { all.Command1.userClicks(); })};
}

/// A number is refused; then the file is there already, and the service fails.
Acts failingExportActs() {
  return {in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userFocuses(); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userTypes("-1"); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtRows.userFocuses(); }),
          in<ExportWindow>([](auto& all) { all.Command1.userClicks(); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userFocuses(); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.uiTxtCols.userTypes("20"); }),
          in<ExportWindow>([](auto& all) { all.ExportControl1.OpenFile.userClicks(); }),
          in<ExportWindow>([](auto& all) { all.Command1.userClicks(); }),
          in<ExportWindow>([](auto& all) { all.Command2.userClicks(); })};
}

class OneWindowCase final : public ModalCase<ServicePropertiesDialog> {
 public:
  using ModalCase::ModalCase;

  void run() override {
    world_.visit(acts());
    // The windows that are opened over it close at once.
    queryInterface<IServicePropertiesDialog>(dialog_)->Init("", nullptr, world_.service);
    if (const auto held = dialog_) static_cast<void>(held->ShowPropertiesModalDialog());
  }
  std::shared_ptr<Form> window() override { return dialog_ ? dialog_->window() : nullptr; }
  std::string showAgain() override {
    return dialog_->ShowPropertiesModalDialog() >= 0 ? std::string() : threadState().gStatus;
  }
  std::string told() override { return toldByProperties(*dialog_); }

 private:
  [[nodiscard]] Acts acts() const {
    using Window = ServicePropertiesDialogForm;
    const StrikingPlexaFactory& engines = *world_.engines;
    Acts acts{[&engines](Form&) {
                engines.raise({"Change", "MosaicMethod", "Viewpoint", "", 0});
              },
              in<Window>([](auto& all) { all.SaveAs.userClicks(); }),
              [&engines](Form&) {
                engines.raise({"Click", "ViewPointControl", "", "", 0});
              },
              in<Window>([](auto& all) { all.Command2.userClicks(); }),
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
  using ModalCase::ModalCase;

  void run() override {
    world_.visit({in<ViewPointSteering>([](auto& all) { all.MoveUp.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.MoveUp.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.Center.userClicks(); }),
                  in<ViewPointSteering>([](auto& all) { all.uiTxtBoxX.userTypes("12"); }),
                  in<ViewPointSteering>([](auto& all) { asksForHelp(all.uiTxtBoxX); }),
                  in<ViewPointSteering>([](auto& all) { all.uibtnok->userClicks(); })});
    queryInterface<IServicePropertiesDialog>(dialog_)->Init("", nullptr, world_.service);
    if (const auto held = dialog_) held->ShowViewPointModalDialog();
  }
  std::shared_ptr<Form> window() override {
    return dialog_ ? dialog_->viewPointDialog().shared_from_this() : nullptr;
  }
  std::string showAgain() override {
    return dialog_->ShowViewPointModalDialog() ? std::string() : threadState().gStatus;
  }
  std::string told() override { return toldByProperties(*dialog_); }
};

}  // namespace

std::vector<SweepScenario> modalScenarios() {
  using Older = SelectionCase<IImageServicesDialog>;
  using Newer = SelectionCase<IOVLImageServicesDialog>;
  return {
      {"selection", [](SweepWorld& world) { return std::make_unique<Older>(world, world.client); }},
      {"selection by a newer client",
       [](SweepWorld& world) {
         return std::make_unique<Newer>(world, std::make_shared<FakeOVLServerClient>(world.server));
       }},
      {"selection without a client",
       [](SweepWorld& world) { return std::make_unique<Older>(world, nullptr); }},
      {"export", [](SweepWorld& world) { return std::make_unique<ExportCase>(world, exportActs()); }},
      {"export that fails",
       [](SweepWorld& world) {
         world.service->exportAnswer = false;
         world.system->writeFile(world.toolkit->file, "an older file");
         return std::make_unique<ExportCase>(world, failingExportActs());
       }},
      {"one window", [](SweepWorld& world) { return std::make_unique<OneWindowCase>(world); }},
      {"viewpoint dialog", [](SweepWorld& world) { return std::make_unique<ViewPointDialogCase>(world); }}};
}

}  // namespace vlclientui::test
