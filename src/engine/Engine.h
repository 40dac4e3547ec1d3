#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contracts/Plexa.h"
#include "contracts/XmlDocument.h"
#include "engine/FormModel.h"
#include "engine/ListModel.h"
#include "engine/Surface.h"

namespace vlclientui::engine {

/// The form engine's control: definitions and data become a model, a surface shows it, and what a person
/// does there becomes Notify. Lists and read-only pages are shown; a page is not edited.
///
/// A list is shown when columns or rows were given, a page otherwise. Nothing stands in a window before
/// Show; a page with neither a parent nor the embedded mode gets a window of its own.
///
/// Rows carry no path. The engine follows where its list is: it starts at the root "/"; a double click on
/// a folder whose handler brings new rows went into that folder, a Backspace whose handler brings new rows
/// went up. Rows that come at any other time leave the place as it is.
///
/// Held by shared_ptr, since a Notify handler may release it.
class Engine final : public Plexa, public SurfaceListener, public std::enable_shared_from_this<Engine> {
 public:
  Engine(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces);
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  void ParentWindow(WindowHandle window) override;
  void DataRootPath(const std::string& path) override { dataRootPath_ = path; }
  void Visible(bool visible) override;
  void Caption(const std::string& caption) override { caption_ = caption; }
  void Width(std::int32_t pixels) override;
  void Height(std::int32_t pixels) override;
  void Left(std::int32_t pixels) override;
  void Top(std::int32_t pixels) override;
  /// A shown page keeps its old values when it cannot be built from the new data; Commit tells so.
  void DataXml(const std::string& xml) override;
  [[nodiscard]] std::string DataXml() const override { return dataXml_; }
  void AttributeDefinition(const std::string& textOrPath) override { attributeDefinition_ = textOrPath; }
  [[nodiscard]] std::string AttributeDefinition() const override { return attributeDefinition_; }
  void FormDefinition(const std::string& text) override { formDefinition_ = text; }
  [[nodiscard]] std::string FormDefinition() const override { return formDefinition_; }
  void ModalFrame(bool modalFrame) override;
  void EmbeddedMode(bool embedded) override { embedded_ = embedded; }
  [[nodiscard]] std::string GetResultXml() override { return dataXml_; }
  /// False only when the shown page could not take the last data.
  bool Commit() override { return !dataRefused_; }
  /// False when a document does not load or makes no page, and when there is no window to show it in.
  [[nodiscard]] bool Show() override;
  /// A text that is no XML comes back as it stands; a file that does not load gives an empty text.
  [[nodiscard]] std::string GetTemplateXml() override;
  /// False for an unknown name and for a value that makes no sense, with nothing changed.
  bool SetOption(const std::string& name, const std::string& value) override;
  /// Null before Show.
  [[nodiscard]] std::shared_ptr<PlexaControl> FindControl(const std::string& name) override;

  void rowClicked(std::size_t row) override;
  void rowActivated(std::size_t row) override;
  void backspacePressed() override;

 private:
  class FieldControl;
  enum class Shown : std::uint8_t { Nothing, List, Form };

  Surface& surface();
  void attach();
  void place(PixelRectangle place);
  [[nodiscard]] bool hasRow(std::size_t row) const;
  [[nodiscard]] bool isList() const { return rows_ || !columns_.empty(); }
  [[nodiscard]] bool showList();
  [[nodiscard]] bool showForm();
  [[nodiscard]] std::shared_ptr<const FormModel> buildPage() const;
  void replacePage();
  void changeField(const std::string& name, bool FormField::*flag, bool value);
  void updateList();
  bool setFields(const std::string& text);
  bool setValues(const std::string& text);
  bool setReadOnly(const std::string& text);
  bool setPageScrollBar(const std::string& text);
  void raise(const PlexaEvent& event, std::optional<std::string> pathOfNewRows = std::nullopt);

  std::shared_ptr<const XmlService> xml_;
  std::shared_ptr<SurfaceFactory> surfaces_;

  WindowHandle parent_ = 0;
  PixelRectangle place_;
  bool visible_ = true;
  bool embedded_ = false;
  WindowFrame frame_ = WindowFrame::Modal;
  bool pageScrollBar_ = true;
  bool readOnly_ = false;
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

  std::shared_ptr<const FormModel> form_;
  bool dataRefused_ = false;

  Shown shown_ = Shown::Nothing;
  std::unique_ptr<Surface> surface_;
};

/// Makes engines over one XML service and one kind of surface.
class EngineFactory final : public PlexaFactory {
 public:
  EngineFactory(std::shared_ptr<const XmlService> xml, std::shared_ptr<SurfaceFactory> surfaces);
  [[nodiscard]] std::shared_ptr<Plexa> createPlexa() override;

 private:
  std::shared_ptr<const XmlService> xml_;
  std::shared_ptr<SurfaceFactory> surfaces_;
};

}  // namespace vlclientui::engine
