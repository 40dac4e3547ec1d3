#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "contracts/Plexa.h"
#include "contracts/XmlDocument.h"
#include "engine/EditableForm.h"
#include "engine/ListModel.h"
#include "engine/Surface.h"
#include "engine/TreeModel.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::engine {

/// Opens a help file at a page; an empty page is where the file begins.
using HelpOpener = std::function<void(const std::string& helpFile, const std::string& page)>;

/// The form engine's control: definitions and data become a model, a surface shows it, and Notify tells what
/// a person does there.
///
/// Shows a list when columns or rows were given, a tree when the tree display is on, a page otherwise. Before
/// Show there is no window; a page with neither a parent nor the embedded mode gets a window of its own.
///
/// Notify tells of a choice at once, of a typed field when a person leaves it, and of a button when it is
/// pressed, after the edits before it. GetResultXml always has the present content of the fields.
///
/// Rows carry no path. The engine follows where its list is: it starts at the root "/"; a double click on
/// any row whose handler brings new rows went into the folder of that name, whatever the row's icon; a double
/// click on ".." or a Backspace whose handler brings new rows went up. Rows that come at any other time leave
/// the place as it is.
///
/// Held by shared_ptr, since a Notify handler may release it.
class Engine final : public Plexa, public SurfaceListener, public std::enable_shared_from_this<Engine> {
 public:
  /// @param openHelp may be empty: then F1 does nothing.
  Engine(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces,
         HelpOpener openHelp);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  ~Engine() override;

  /// The living ones of the calling thread, oldest first.
  [[nodiscard]] static const std::vector<Engine*>& ofThread() { return engines(); }
  /// The first row of that name in the shown list; nothing without one.
  [[nodiscard]] std::optional<std::size_t> rowNamed(std::string_view name) const;
  [[nodiscard]] bool showsList() const { return list_ != nullptr; }
  /// Null where no page is shown that has the field. @param path as a surface names it.
  [[nodiscard]] const FormField* fieldAt(const std::string& path) const;

  void ParentWindow(WindowHandle window) override;
  void DataRootPath(const std::string& path) override { dataRootPath_ = path; }
  void Visible(bool visible) override;
  void Caption(const std::string& caption) override { caption_ = caption; }
  void Width(std::int32_t pixels) override;
  void Height(std::int32_t pixels) override;
  void Left(std::int32_t pixels) override;
  void Top(std::int32_t pixels) override;
  /// On a shown page the edits go with the old data. When the new data make no page or tree, the old one
  /// stays, and Commit returns false.
  void DataXml(const std::string& xml) override;
  [[nodiscard]] std::string DataXml() const override { return dataXml_; }
  void AttributeDefinition(const std::string& textOrPath) override { attributeDefinition_ = textOrPath; }
  [[nodiscard]] std::string AttributeDefinition() const override { return attributeDefinition_; }
  void FormDefinition(const std::string& text) override { formDefinition_ = text; }
  [[nodiscard]] std::string FormDefinition() const override { return formDefinition_; }
  void ModalFrame(bool modalFrame) override;
  void EmbeddedMode(bool embedded) override { embedded_ = embedded; }
  /// Byte for byte the given data when no field was edited. Leaves out values that a field cannot take.
  [[nodiscard]] std::string GetResultXml() override;
  /// Shows the complaints about edits. False while there is one, and when the shown page could not take the
  /// last data.
  bool Commit() override;
  /// False when a document does not load or makes no page, and when there is no window for it.
  [[nodiscard]] bool Show() override;
  /// A text that is not XML comes back unchanged; a file that does not load gives an empty text.
  [[nodiscard]] std::string GetTemplateXml() override;
  /// False, with nothing changed, for an unknown name or a value that makes no sense.
  bool SetOption(const std::string& name, const std::string& value) override;
  /// Null before Show.
  [[nodiscard]] std::shared_ptr<PlexaControl> FindControl(const std::string& name) override;

  void rowClicked(std::size_t row) override;
  void rowActivated(std::size_t row) override;
  void backspacePressed() override;
  void fieldEdited(const std::string& path, const std::string& text) override;
  void fieldLeft(const std::string& path) override;
  void buttonPressed(const std::string& path) override;
  bool helpAsked(const std::string& path) override;

 private:
  static std::vector<Engine*>& engines();

  class FieldControl;
  enum class Shown : std::uint8_t { Nothing, List, Form, Tree };

  Surface& surface();
  void attach();
  void place(PixelRectangle place);
  [[nodiscard]] bool hasRow(std::size_t row) const;
  [[nodiscard]] bool isList() const { return rows_ || !columns_.empty(); }
  [[nodiscard]] bool showList();
  [[nodiscard]] bool showForm();
  [[nodiscard]] bool showTree();
  [[nodiscard]] PageDocuments pageDocuments() const;
  [[nodiscard]] PageMode pageMode() const { return readOnly_ ? PageMode::ReadOnly : PageMode::Editable; }
  [[nodiscard]] std::unique_ptr<EditableForm> buildPage() const;
  [[nodiscard]] bool replacePage();
  [[nodiscard]] bool replaceTree();
  void updatePage();
  bool tellChange(const std::string& path);
  void changeField(const std::string& name, bool FormField::*flag, bool value);
  void updateList();
  bool setFields(const std::string& text);
  bool setValues(const std::string& text);
  static bool setYesNo(bool& option, const std::string& text);
  bool setPageScrollBar(const std::string& text);
  void raise(const PlexaEvent& event, std::optional<std::string> pathOfNewRows = std::nullopt);

  std::shared_ptr<const XmlService> xml_;
  std::shared_ptr<SurfaceFactory> surfaces_;
  HelpOpener openHelp_;

  WindowHandle parent_ = 0;
  PixelRectangle place_;
  bool visible_ = true;
  bool embedded_ = false;
  WindowFrame frame_ = WindowFrame::Modal;
  bool pageScrollBar_ = true;
  bool readOnly_ = false;
  bool treeDisplay_ = false;
  std::string caption_;
  std::string dataRootPath_ = "//";
  std::string dataXml_;
  std::string attributeDefinition_;
  std::string formDefinition_;

  std::vector<ListColumn> columns_;
  std::shared_ptr<const ListRows> rows_;
  std::shared_ptr<const ListModel> list_;
  std::string path_ = "/";
  std::optional<std::string> pathOfNewRows_;

  std::unique_ptr<EditableForm> page_;
  bool dataRefused_ = false;

  Shown shown_ = Shown::Nothing;
  std::unique_ptr<Surface> surface_;
};

/// Makes engines over one XML service and one kind of surface.
class EngineFactory final : public PlexaFactory {
 public:
  EngineFactory(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces,
                HelpOpener openHelp = {});
  [[nodiscard]] std::shared_ptr<Plexa> createPlexa() override;

  [[nodiscard]] const std::shared_ptr<SurfaceFactory>& surfaces() const { return surfaces_; }
  /// One that differs from this in its surfaces.
  [[nodiscard]] std::shared_ptr<EngineFactory> withSurfaces(std::shared_ptr<SurfaceFactory> surfaces) const {
    return std::make_shared<EngineFactory>(xml_, std::move(surfaces), openHelp_);
  }

 private:
  std::shared_ptr<const XmlService> xml_;
  std::shared_ptr<SurfaceFactory> surfaces_;
  HelpOpener openHelp_;
};

}  // namespace vlclientui::engine
#pragma GCC visibility pop
