#include "ExportCommand.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

#include "HeadlessSession.h"
#include "client/CatalogueImageService.h"
#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "export/ExportDialog.h"
#include "library/ClassFactory.h"

namespace vlclientui::vlhost {
namespace {

constexpr int kBarWidth = 40;

/// Shows how far an export is, where a person watches.
class ProgressLine {
 public:
  void show(double share) {
    if (isatty(STDERR_FILENO) == 0) return;
    const int percent = static_cast<int>(share * 100);
    if (std::exchange(percent_, percent) == percent) return;
    const int done = static_cast<int>(share * kBarWidth);
    std::cerr << "\r[" << std::string(static_cast<std::size_t>(done), '=')
              << std::string(static_cast<std::size_t>(kBarWidth - done), ' ') << "] " << percent << " %"
              << std::flush;
    isOpen_ = true;
  }
  /// What is told next stands in a line of its own.
  void end() {
    if (std::exchange(isOpen_, false)) std::cerr << "\n";
  }

 private:
  int percent_ = -1;
  bool isOpen_ = false;
};

/// The service of the reference, which remembers how its export went and writes nothing in a dry run.
class CommandLineService : public client::CatalogueImageService {
 public:
  CommandLineService(const host::ComposedHost& composed, const ExportCommand& command)
      : CatalogueImageService(composed.catalogue, *composed.platform->xml, wholeReference(command.reference),
                              {composed.installation.definitions,
                               [this](double share) {
                                 progress_.show(share);
                                 return true;
                               }}),
        dryRun_(command.dryRun) {}

  bool ExportImage() override {
    exported_ = dryRun_ || CatalogueImageService::ExportImage();
    progress_.end();
    return exported_;
  }
  [[nodiscard]] bool exported() const { return exported_; }

 private:
  ProgressLine progress_;
  bool dryRun_;
  bool exported_ = false;
};

/// The window makes the folders of its file; a dry run leaves none of them behind.
class FoldersOfDryRun {
 public:
  FoldersOfDryRun(bool dryRun, const std::filesystem::path& file) {
    if (!dryRun) return;
    std::error_code error;
    for (auto folder = file.parent_path();
         !std::filesystem::exists(folder, error) && folder.has_relative_path();
         folder = folder.parent_path()) {
      missing_.push_back(folder);
    }
  }
  ~FoldersOfDryRun() {
    std::error_code error;
    for (const auto& folder : missing_) std::filesystem::remove(folder, error);
  }
  FoldersOfDryRun(const FoldersOfDryRun&) = delete;
  FoldersOfDryRun& operator=(const FoldersOfDryRun&) = delete;

 private:
  std::vector<std::filesystem::path> missing_;  ///< the deepest first
};

void chooseEntry(DropDown& list, const std::string& entry) {
  const auto found = std::ranges::find(list.entries(), entry);
  if (found == list.entries().end()) {
    std::string known;
    for (const std::string& each : list.entries()) known += (known.empty() ? "" : ", ") + each;
    throw RuntimeFailure("there is no entry '" + entry + "'; there are: " + known);
  }
  list.userFocuses();
  list.userSelects(static_cast<std::size_t>(found - list.entries().begin()));
}

void edit(ExportControl& window, const FieldEdit& given) {
  Control* const control = window.findControl(given.control);
  if (auto* const list = dynamic_cast<DropDown*>(control)) return chooseEntry(*list, given.text);
  if (auto* const box = dynamic_cast<CheckBox*>(control)) return box->userClicks();
  auto& text = dynamic_cast<TextBox&>(*control);
  if (!text.enabled()) throw RuntimeFailure("the format leaves no choice for '" + given.text + "'");
  text.userFocuses();
  text.userTypes(given.text);
}

/// What a person does in the open window. Stops at the first refusal, as a person would to read it.
class Visit {
 public:
  Visit(const ExportCommand& command, const headless::HeadlessToolkit& toolkit, std::string file)
      : command_(command), toolkit_(toolkit), file_(std::move(file)) {}

  void operator()(Form& form) {
    auto& controls = dynamic_cast<ExportDialogForm&>(form).controls();
    ExportControl& window = controls.ExportControl1;
    try {
      for (const FieldEdit& given : command_.edits) edit(window, given);
      edit(window, {"uiTxtFileName", file_});
      controls.Command1.userFocuses();
    } catch (const RuntimeFailure& failure) {
      problem = failure.description();
    }
    estimate = window.uiTxtMB.text();
    if (problem.empty() && toolkit_.messages().empty()) controls.Command1.userClicks();
  }

  std::string problem;
  std::string estimate;

 private:
  const ExportCommand& command_;
  const headless::HeadlessToolkit& toolkit_;
  std::string file_;
};

/// The file that was written: the window gives every name the extension of its format.
std::string writtenFile(const Platform& platform, const std::string& request) {
  const auto document = platform.xml->createDocument();
  static_cast<void>(document->loadXml(request));
  return platform.system->nativePath(readText(*document, "//FileName").value_or(""));
}

}  // namespace

int runExport(const ExportCommand& command) {
  const HeadlessSession session;
  const host::ComposedHost& composed = session.host();
  headless::HeadlessToolkit& toolkit = session.toolkit();
  const auto service = std::make_shared<CommandLineService>(composed, command);
  const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
  if (!dialog->IExportImageDialog_Init("", nullptr, service)) {
    std::cerr << "vlhost: the export cannot be prepared\n";
    return 1;
  }
  const std::string file = composed.platform->system->logicPath(wholePath(command.output));
  const FoldersOfDryRun folders(command.dryRun, wholePath(command.output));
  Visit visit(command, toolkit, file);
  toolkit.scriptModal([&visit](Form& form) { visit(form); });
  dialog->iExportImageDialog_ShowModalDialogEx("");

  if (!visit.problem.empty()) std::cerr << "vlhost: " << visit.problem << "\n";
  session.tellMessages();
  if (!service->exported()) return 1;
  const std::string request = dialog->iExportImageDialog_GetUpdatedProperties();
  if (command.dryRun) {
    std::cout << request << "\nApprox. MB: " << visit.estimate << "\n";
  } else {
    std::cout << "wrote " << writtenFile(*composed.platform, request) << "\n";
  }
  return 0;
}

}  // namespace vlclientui::vlhost
