#include "engine/Engine.h"

#include <utility>

#include "contracts/Operations.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "documents/ParsedDocument.h"
#include "engine/Definition.h"
#include "engine/FormBuilder.h"

namespace vlclientui::engine {
namespace {

constexpr std::int32_t backspaceKey = 8;
constexpr std::string_view parentRow = "..";

std::string pathBelow(const std::string& path, std::string_view folder) {
  return (path == "/" ? path : path + "/") + std::string(folder);
}

std::string pathAbove(const std::string& path) {
  const auto slash = path.rfind('/');
  return slash == 0 ? "/" : path.substr(0, slash);
}

bool failsToShow(const char* reason, const RoutineName& routine = std::source_location::current()) {
  endSilently(reason, routine);
  return false;
}

/// Sets a value for the length of a scope.
template <class T>
class Temporarily {
 public:
  Temporarily(T& target, T value) : target_(target), before_(std::exchange(target, std::move(value))) {}
  Temporarily(const Temporarily&) = delete;
  Temporarily& operator=(const Temporarily&) = delete;
  ~Temporarily() { target_ = std::move(before_); }

 private:
  T& target_;
  T before_;
};

}  // namespace

/// A field of the shown page. Outlives its engine harmlessly.
class Engine::FieldControl final : public PlexaControl {
 public:
  FieldControl(std::weak_ptr<Engine> engine, std::string name)
      : engine_(std::move(engine)), name_(std::move(name)) {}

  [[nodiscard]] std::int32_t ListCount() const override {
    return static_cast<std::int32_t>(field().allowedValues.size());
  }

  [[nodiscard]] std::string List(std::int32_t index) const override {
    const auto values = field().allowedValues;
    if (index < 0 || static_cast<std::size_t>(index) >= values.size()) {
      throw RuntimeFailure("The list of " + name_ + " has no such entry", FailureKind::InvalidIndex);
    }
    return values[static_cast<std::size_t>(index)];
  }

  [[nodiscard]] std::string Text() const override { return field().value; }
  void Visible(bool visible) override { engine()->changeField(name_, &FormField::visible, visible); }
  void Enabled(bool enabled) override { engine()->changeField(name_, &FormField::enabled, enabled); }

 private:
  [[nodiscard]] std::shared_ptr<Engine> engine() const {
    auto engine = engine_.lock();
    if (!engine) failMissingObject("the page of " + name_);
    return engine;
  }

  [[nodiscard]] FormField field() const {
    const auto form = engine()->page_->model();
    const auto* found = form->findField(name_);
    if (!found) failMissingObject(name_);
    return *found;
  }

  std::weak_ptr<Engine> engine_;
  std::string name_;
};

Engine::Engine(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces,
               HelpOpener openHelp)
    : xml_(std::move(xml)), surfaces_(std::move(surfaces)), openHelp_(std::move(openHelp)) {
  engines().push_back(this);
}

Engine::~Engine() { std::erase(engines(), this); }

std::vector<Engine*>& Engine::engines() {
  thread_local std::vector<Engine*> living;
  return living;
}

std::optional<std::size_t> Engine::rowNamed(std::string_view name) const {
  for (std::size_t row = 0; hasRow(row); ++row) {
    if (list_->displayName(row) == name) return row;
  }
  return std::nullopt;
}

const FormField* Engine::fieldAt(const std::string& path) const {
  return page_ ? page_->model()->fieldAt(path) : nullptr;
}

// --- the window -----------------------------------------------------------------------------------------

// Made on demand: an engine asked only for its template never has a window.
Surface& Engine::surface() {
  if (!surface_) surface_ = surfaces_->createSurface(std::shared_ptr<SurfaceListener>(shared_from_this()));
  return *surface_;
}

void Engine::attach() {
  const char* title = shown_ == Shown::List   ? listWindowTitle
                      : shown_ == Shown::Tree ? treeWindowTitle
                                              : pageWindowTitle;
  surface().attach(parent_, title);
  surface().setGeometry(place_);
}

void Engine::ParentWindow(WindowHandle window) {
  parent_ = window;
  if (window == 0) {
    if (surface_) surface_->detach();
  } else if (shown_ != Shown::Nothing) {
    attach();
  }
}

void Engine::Visible(bool visible) {
  visible_ = visible;
  if (shown_ != Shown::Nothing) surface().setVisible(visible);
}

void Engine::place(PixelRectangle place) {
  place_ = place;
  if (shown_ != Shown::Nothing) surface().setGeometry(place_);
}

void Engine::Width(std::int32_t pixels) { place({place_.left, place_.top, pixels, place_.height}); }
void Engine::Height(std::int32_t pixels) { place({place_.left, place_.top, place_.width, pixels}); }
void Engine::Left(std::int32_t pixels) { place({pixels, place_.top, place_.width, place_.height}); }
void Engine::Top(std::int32_t pixels) { place({place_.left, pixels, place_.width, place_.height}); }

void Engine::ModalFrame(bool modalFrame) {
  frame_ = modalFrame ? WindowFrame::Modal : WindowFrame::Resizable;
}

// --- showing --------------------------------------------------------------------------------------------

bool Engine::Show() {
  // A separate window pumps events, in which the holder may release the engine.
  const auto self = shared_from_this();
  if (isList()) return showList();
  return treeDisplay_ ? showTree() : showForm();
}

bool Engine::showList() {
  if (parent_ == 0) return failsToShow("a list needs a window to stand in");
  if (!dataXml_.empty() && !loadOrStayEmpty(*xml_->createDocument(), dataXml_)) return false;
  list_ = std::make_shared<ListModel>(columns_, rows_, path_);
  shown_ = Shown::List;
  attach();
  surface().showList(list_);
  surface().setVisible(visible_);
  return true;
}

bool Engine::showTree() {
  if (parent_ == 0) return failsToShow("a tree needs a window to stand in");
  auto tree = TreeModel::parse(*xml_, dataXml_);
  if (!tree) return false;
  shown_ = Shown::Tree;
  attach();
  surface().showTree(std::move(tree));
  surface().setVisible(visible_);
  return true;
}

bool Engine::showForm() {
  if (parent_ == 0 && embedded_) return failsToShow("an embedded page needs a window to stand in");
  auto page = buildPage();
  if (!page) return false;
  page_ = std::move(page);
  shown_ = Shown::Form;
  if (parent_ == 0) {
    surface().runWindow(caption_, frame_, page_->model());
    if (parent_ == 0) shown_ = Shown::Nothing;
    return true;
  }
  attach();
  surface().setPageScrollBar(pageScrollBar_);
  surface().showForm(page_->model());
  surface().setVisible(visible_);
  return true;
}

PageDocuments Engine::pageDocuments() const {
  return {attributeDefinition_, formDefinition_, dataXml_, dataRootPath_};
}

std::unique_ptr<EditableForm> Engine::buildPage() const {
  try {
    return std::make_unique<EditableForm>(*xml_, pageDocuments(), pageMode());
  } catch (const RuntimeFailure& failure) {
    endSilently(failure.what());
    return nullptr;
  }
}

// --- definitions and data -------------------------------------------------------------------------------

void Engine::DataXml(const std::string& xml) {
  dataXml_ = xml;
  if (shown_ == Shown::Form) dataRefused_ = !replacePage();
  if (shown_ == Shown::Tree) dataRefused_ = !replaceTree();
}

bool Engine::replacePage() {
  try {
    page_->replaceData(*xml_, pageDocuments(), pageMode());
  } catch (const RuntimeFailure& failure) {
    endSilently(failure.what());
    return false;
  }
  updatePage();
  return true;
}

bool Engine::replaceTree() {
  auto tree = TreeModel::parse(*xml_, dataXml_);
  if (!tree) return false;
  surface().showTree(std::move(tree));
  return true;
}

void Engine::updatePage() {
  if (shown_ == Shown::Form) surface().updateForm(page_->model());
}

std::string Engine::GetResultXml() { return page_ && !dataRefused_ ? page_->result() : dataXml_; }

bool Engine::Commit() {
  if (!page_) return !dataRefused_;
  const bool allGood = page_->check();
  updatePage();
  return allGood && !dataRefused_;
}

std::string Engine::GetTemplateXml() {
  const auto document = loadDefinition(*xml_, attributeDefinition_);
  if (document) return document->xml();
  return isDefinitionText(attributeDefinition_) ? attributeDefinition_ : std::string();
}

std::shared_ptr<PlexaControl> Engine::FindControl(const std::string& name) {
  if (!page_ || !name.starts_with('@') || !page_->model()->findField(name.substr(1))) return nullptr;
  return std::make_shared<FieldControl>(weak_from_this(), name.substr(1));
}

void Engine::changeField(const std::string& name, bool FormField::*flag, bool value) {
  page_->setFlag(name, flag, value);
  updatePage();
}

// --- options --------------------------------------------------------------------------------------------

bool Engine::SetOption(const std::string& name, const std::string& value) {
  if (name == "List_Fields") return setFields(value);
  if (name == "List_Values") return setValues(value);
  if (name == "readonly") return setYesNo(readOnly_, value);
  if (name == "treeviewdisplay") return setYesNo(treeDisplay_, value);
  if (name == "ShowVScrollBar") return setPageScrollBar(value);
  endSilently("there is no option '" + name + "'");
  return false;
}

bool Engine::setFields(const std::string& text) {
  auto columns = parseListFields(*xml_, text);
  if (!columns) return false;
  columns_ = std::move(*columns);
  updateList();
  return true;
}

bool Engine::setValues(const std::string& text) {
  auto rows = ListRows::parse(*xml_, text);
  if (!rows) return false;
  rows_ = std::move(rows);
  if (pathOfNewRows_) path_ = *pathOfNewRows_;
  updateList();
  return true;
}

void Engine::updateList() {
  if (shown_ != Shown::List) return;
  list_ = std::make_shared<ListModel>(columns_, rows_, path_);
  surface().updateList(list_);
}

bool Engine::setYesNo(bool& option, const std::string& text) {
  const auto value = parseYesNo(text);
  if (value) option = *value;
  if (!value) endSilently("an option is neither true nor false");
  return value.has_value();
}

bool Engine::setPageScrollBar(const std::string& text) {
  const bool understood = setYesNo(pageScrollBar_, text);
  if (understood && shown_ == Shown::Form) surface().setPageScrollBar(pageScrollBar_);
  return understood;
}

// --- what a person does ---------------------------------------------------------------------------------

bool Engine::hasRow(std::size_t row) const { return list_ && row < list_->rowCount(); }

void Engine::rowClicked(std::size_t row) {
  if (!hasRow(row)) return;
  tellOperation({Operation::Kind::Row, {}, std::string(list_->displayName(row)), {}});
  raise({"Click", "", path_, std::string(list_->displayName(row)), 0});
}

void Engine::rowActivated(std::size_t row) {
  if (!hasRow(row)) return;
  const std::string name(list_->displayName(row));
  tellOperation({Operation::Kind::Open, {}, name, {}});
  // No look at the icon: a service may bear the name of a folder, and then its row opens the folder.
  raise({"DblClick", "", path_, name, 0}, name == parentRow ? pathAbove(path_) : pathBelow(path_, name));
}

void Engine::backspacePressed() {
  if (path_ == "/") return;
  tellOperation({Operation::Kind::Back, {}, {}, {}});
  raise({"DblClick", "", path_, "", backspaceKey}, pathAbove(path_));
}

void Engine::fieldEdited(const std::string& path, const std::string& text) {
  if (!page_ || !page_->edit(path, text)) return;
  tellOperation({Operation::Kind::Field, {}, path, text});
  updatePage();
  if (!page_->model()->fieldAt(path)->typed()) fieldLeft(path);
}

void Engine::fieldLeft(const std::string& path) {
  if (!page_) return;
  page_->finish(path);
  updatePage();
  tellChange(path);
}

/// @returns whether the page is still the same one: a handler may have replaced it.
bool Engine::tellChange(const std::string& path) {
  const auto* page = page_.get();
  if (const auto change = page_->takeChange(path)) raise({"Change", change->name, change->value, "", 0});
  return page_.get() == page && page_->model()->fieldAt(path);
}

// The edit that the click on the button ends comes first.
void Engine::buttonPressed(const std::string& path) {
  if (!page_) return;
  tellOperation({Operation::Kind::Button, {}, path, {}});
  for (const auto& edited : page_->editedPaths()) {
    page_->finish(edited);
    updatePage();
    if (!tellChange(edited)) return;
  }
  const auto* field = page_->model()->fieldAt(path);
  if (field && field->visible && field->enabled) raise({"Click", field->name, "", "", 0});
}

bool Engine::helpAsked(const std::string& path) {
  if (!page_ || !openHelp_ || page_->model()->helpFile.empty()) return false;
  const auto* field = page_->model()->fieldAt(path);
  openHelp_(page_->model()->helpFile, field ? field->helpPage : page_->model()->helpPage);
  return true;
}

// The place moves the moment the handler brings rows, so that it is right even when the handler fails later.
void Engine::raise(const PlexaEvent& event, std::optional<std::string> pathOfNewRows) {
  const auto self = shared_from_this();
  const Temporarily expecting(pathOfNewRows_, std::move(pathOfNewRows));
  Notify.raise(*this, event);
}

EngineFactory::EngineFactory(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces,
                             HelpOpener openHelp)
    : xml_(std::move(xml)), surfaces_(std::move(surfaces)), openHelp_(std::move(openHelp)) {}

std::shared_ptr<Plexa> EngineFactory::createPlexa() {
  return std::make_shared<Engine>(xml_, surfaces_, openHelp_);
}

}  // namespace vlclientui::engine
