#pragma once

#include <memory>
#include <string>

#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "contracts/controls/PageControls.h"

namespace vlclientui::test {

/// A window with a control of each common kind. Its box of numbers refuses anything else when it is left; Ask
/// wants to know something, Browse wants a file,
/// Folder a folder, Ok, which Enter clicks, closes the window.
class RunForm : public Form {
 public:
  struct Controls {
    explicit Controls(RunForm& form)
        : number(form, "number"),
          file(form, "file"),
          check(form, "check", "Check"),
          choice(form, "choice"),
          list(form, "list"),
          ask(form, "ask", "Ask"),
          browse(form, "browse", "Browse"),
          folder(form, "folder", "Folder"),
          ok(form, "ok", "Ok"),
          twins(form, "twins"),
          report(form, "report", {"name", "value"}) {
      choice.addEntries({"one", "two three"});
      list.addEntries({"a", "b", "c"});
      twins.addEntries({"same", "other", "same", "same"});
      report.addRow({"one", "x"});
      report.addRow({"one", "y"});
    }
    TextBox number;
    TextBox file;
    CheckBox check;
    DropDown choice;
    vlclientui::ListBox list;
    Button ask;
    Button browse;
    Button folder;
    Button ok;
    vlclientui::ListBox twins;  ///< some entries of which have the same text
    ReportList report;          ///< rows of the same name
  };

  explicit RunForm(Toolkit& toolkit) : Form(toolkit, "RunForm") {}

  [[nodiscard]] Controls& controls() const { return *controls_; }

  std::string kept;  ///< what a host reads once the window is closed

 protected:
  std::shared_ptr<void> buildControls() override { return controls_ = std::make_shared<Controls>(*this); }
  void dropControls() override { controls_.reset(); }
  void onLoad() override {
    setCaption("Run");
    setDefaultButton(&controls().ok);
    controls().number.lostFocus.connect([this] {
      if (controls().number.text().find_first_not_of("0123456789") == std::string::npos) return;
      toolkit().showMessage({"Cannot enter characters", "", MessageIcon::Critical, MessageButtons::Ok});
      controls().number.setText("0");
    });
    controls().ask.click.connect([this] {
      const auto answer =
          toolkit().showMessage({"Really?", "", MessageIcon::Question, MessageButtons::YesNo});
      controls().file.setText(wordOf(answer));
    });
    controls().browse.click.connect(
        [this] { controls().file.setText(toolkit().openFile({}).value_or("nothing")); });
    controls().folder.click.connect([this] {
      const auto choice = toolkit().browseForFolder({});
      controls().file.setText(choice ? choice->path.value_or("") + " " + choice->displayName : "nothing");
    });
    controls().ok.click.connect([this] {
      kept = controls().number.text() + " " + controls().choice.text();
      unload();
    });
  }

 private:
  std::shared_ptr<Controls> controls_;
};

}  // namespace vlclientui::test
