#include "ExportCommand.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

#include "ExportPlanText.h"
#include "HeadlessSession.h"
#include "ProgressLine.h"
#include "ServicesCommand.h"
#include "Telling.h"
#include "TypedNumber.h"
#include "client/facade/CatalogueImageService.h"
#include "client/jobs/ExportJob.h"
#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "documents/ParsedDocument.h"
#include "export/ExportDialog.h"
#include "host/ShownText.h"
#include "library/ClassFactory.h"

namespace vlclientui::vlhost {
namespace {

/// The file that a request asks for: the window gives every name the extension of its format.
std::filesystem::path requestedFile(const Platform& platform, const std::string& request) {
  const auto document = parsedDocument(*platform.xml, request);
  return platform.system->nativePath(readText(*document, "//FileName").value_or(""));
}

/// The service of the reference, which remembers how its export went and only plans it in a dry run.
class CommandLineService : public client::CatalogueImageService {
 public:
  CommandLineService(const host::ComposedHost& composed, const ExportCommand& command)
      : CatalogueImageService(composed.catalogue, *composed.platform->xml, wholeReference(command.reference),
                              {composed.installation.definitions,
                               [this](double share) {
                                 progress_.show(share);
                                 return true;
                               }}),
        progress_(command.progress),
        platform_(composed.platform),
        typedFile_(wholePath(command.output)),
        dryRun_(command.dryRun),
        keeping_(command.keeping) {}

  void ExportProperties(const std::string& request) override {
    if (!dryRun_) tellOtherName(requestedFile(*platform_, request));
    CatalogueImageService::ExportProperties(request);
    job_ = client::jobDocument(job(), *platform_->xml);
  }

  bool ExportImage() override {
    exported_ = dryRun_ ? makePlan() : writeFile();
    return exported_;
  }
  [[nodiscard]] bool exported() const { return exported_; }
  /// Of the request that the window handed over, as a document; empty where it handed over none.
  [[nodiscard]] const std::string& jobText() const { return job_; }
  [[nodiscard]] const client::ExportForecast& plan() const { return plan_; }
  /// Why there is no plan; empty otherwise.
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  bool makePlan() {
    try {
      plan_ = forecastExport();
    } catch (const RuntimeFailure& failure) {
      problem_ = failure.description();
    }
    return problem_.empty();
  }

  bool writeFile() {
    tellOfKept(keptPart());
    setKeeping(keeping_);
    const bool isWritten = CatalogueImageService::ExportImage();
    progress_.end();
    if (!isWritten && keeping_ != client::Keeping::Nothing && keptPart())
      tell("what was read is kept; the same command with --resume goes on with it");
    return isWritten;
  }

  void tellOfKept(const std::optional<client::KeptPart>& kept) const {
    using client::Keeping;
    if (!kept || kept->isInUse || keeping_ == Keeping::Anew || keeping_ == Keeping::Begin) return;
    const std::string size = sizeText(kept->bytes);
    if (keeping_ == Keeping::GoOn) return tell("going on with " + size + " that are kept");
    tell(size + " of an unfinished export of this file are kept; --resume would go on with them");
  }

  void tellOtherName(const std::filesystem::path& file) const {
    if (file == typedFile_) return;
    tell("the file will be " + file.string() + ", with the ending of its format");
  }

  ProgressLine progress_;
  std::shared_ptr<const Platform> platform_;
  std::filesystem::path typedFile_;
  bool dryRun_;
  client::Keeping keeping_;
  bool exported_ = false;
  std::string job_;
  client::ExportForecast plan_;
  std::string problem_;
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

void edit(ExportControl& window, const FieldEdit& given, const LocaleFormat& locale) {
  Control* const control = window.findControl(given.control);
  if (auto* const list = dynamic_cast<DropDown*>(control)) return chooseEntry(*list, given.text);
  if (auto* const box = dynamic_cast<CheckBox*>(control)) return box->userClicks();
  auto& text = dynamic_cast<TextBox&>(*control);
  if (!text.enabled()) throw RuntimeFailure("the format leaves no choice for '" + given.text + "'");
  if (&text != &window.uiTxtFileName) refuseForeignNumber(given.text, locale);
  text.userFocuses();
  text.userTypes(given.text);
}

/// Nothing for other texts, which the window refuses.
std::optional<double> numberIn(const TextBox& box, const LocaleFormat& locale) {
  if (!isNumeric(box.text(), locale)) return std::nullopt;
  return textToDouble(box.text(), locale);
}

bool areApart(std::optional<double> one, std::optional<double> other, double low, double high) {
  return one && other && (std::max(*one, *other) <= low || std::min(*one, *other) >= high);
}

/// The window accepts any extent, but nobody wants a file without any data.
void refuseExtentOutside(const ExportControl& window, const client::Bounds& service,
                         const LocaleFormat& locale) {
  const auto number = [&](const TextBox& box) { return numberIn(box, locale); };
  if (!areApart(number(window.uiTxtLeft), number(window.uiTxtRight), service.xMin, service.xMax) &&
      !areApart(number(window.uiTxtBottom), number(window.uiTxtTop), service.yMin, service.yMax)) {
    return;
  }
  const auto text = [&](double value) { return " " + doubleToText(value, locale); };
  throw RuntimeFailure("the extent lies outside the service, whose own is" + text(service.xMin) +
                       text(service.yMin) + text(service.xMax) + text(service.yMax));
}

/// What a person does in the open window. Stops at the first refusal, as a person would to read it.
class Visit {
 public:
  Visit(const ExportCommand& command, const HeadlessSession& session, const client::Bounds& envelope)
      : command_(command),
        toolkit_(session.toolkit()),
        locale_(session.host().platform->system->localeFormat()),
        file_(session.host().platform->system->logicPath(wholePath(command.output))),
        envelope_(envelope) {}

  void operator()(Form& form) {
    auto& controls = dynamic_cast<ExportDialogForm&>(form).controls();
    ExportControl& window = controls.ExportControl1;
    try {
      for (const FieldEdit& given : command_.edits) {
        if (isRefused()) break;
        type(window, given);
      }
      if (!isRefused()) type(window, {"uiTxtFileName", file_});
      if (!isRefused()) controls.Command1.userFocuses();
      if (isRefused()) problem = refusal();
      if (!isRefused()) refuseExtentOutside(window, envelope_, locale_);
    } catch (const RuntimeFailure& failure) {
      problem = failure.description();
    }
    estimate = window.uiTxtMB.text();
    const SilenceListener listener(
        [this](const SilentEnd& end) { silentReasons += (silentReasons.empty() ? "" : "; ") + end.reason; });
    if (problem.empty() && !isRefused()) controls.Command1.userClicks();
  }

  std::string problem;
  std::string silentReasons;  ///< of what ended without a word at OK
  std::string estimate;

 private:
  [[nodiscard]] bool isRefused() const { return !toolkit_.messages().empty(); }

  /// A box refuses what it holds when the next one gets the focus.
  void type(ExportControl& window, const FieldEdit& given) {
    edit(window, given, locale_);
    const bool isBox = dynamic_cast<TextBox*>(window.findControl(given.control)) != nullptr;
    if (isBox && !isRefused()) typed_ = given;
  }

  /// The window does not say which of several values it means.
  [[nodiscard]] std::string refusal() const {
    const std::string text = toolkit_.messages().back().text;
    return typed_.option.empty() ? text : text + ": " + typed_.option + " '" + typed_.text + "'";
  }

  const ExportCommand& command_;
  const headless::HeadlessToolkit& toolkit_;
  LocaleFormat locale_;
  FieldEdit typed_;  ///< into the box that has the focus
  std::string file_;
  client::Bounds envelope_;
};

int tellOutcome(const ExportCommand& command, const HeadlessSession& session, const Visit& visit,
                const CommandLineService& service, const std::string& request) {
  if (!command.jobFile.empty())
    client::saveJob(service.job(), command.jobFile, *session.host().platform->xml);
  if (command.dryRun) {
    const std::string shown = host::shownText(session.host(), request);
    std::cout << planText({shown, visit.estimate, service.jobText(), service.plan()}, command.plan);
  } else {
    const auto file = requestedFile(*session.host().platform, request);
    std::cout << (command.plan == PlanOutput::Json ? writtenJson(file, service.jobText())
                                                   : "wrote " + terminalText(file.string()) + "\n");
  }
  return 0;
}

/// The window ends some failures without a word to the person.
int tellFailure(const HeadlessSession& session, const Visit& visit, const CommandLineService& service) {
  if (!service.problem().empty()) {
    tell(service.problem());
  } else if (!visit.problem.empty()) {
    tell(host::shownText(session.host(), visit.problem));
  } else if (!session.tellMessages()) {
    tell("nothing was exported: " + host::shownText(session.host(), visit.silentReasons));
  }
  return 1;
}

}  // namespace

int runExport(const ExportCommand& command) {
  const HeadlessSession session;
  const host::ComposedHost& composed = session.host();
  refuseMissingSamples(composed.installation, command.reference);
  const auto service = std::make_shared<CommandLineService>(composed, command);
  const auto dialog = queryInterface<IExportImageDialog>(createObject("ExportDialog"));
  if (!dialog->IExportImageDialog_Init("", nullptr, service)) {
    throw RuntimeFailure("the export cannot be prepared: " + dialog->iExportImageDialog_Status());
  }
  const FoldersOfDryRun folders(command.dryRun, wholePath(command.output));
  Visit visit(command, session, service->facts().envelope);
  session.toolkit().scriptModal([&visit](Form& form) { visit(form); });
  dialog->iExportImageDialog_ShowModalDialogEx("");
  if (!service->exported()) return tellFailure(session, visit, *service);
  session.tellMessages();
  return tellOutcome(command, session, visit, *service, dialog->iExportImageDialog_GetUpdatedProperties());
}

}  // namespace vlclientui::vlhost
