#pragma once

#include <QFormLayout>
#include <QGroupBox>
#include <QPointer>
#include <QScrollArea>
#include <QTabWidget>
#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "engine/FormModel.h"
#include "widgets/FieldView.h"

namespace vlclientui::widgets {

/// A page: groups of labels and fields, on tabs where the model has them. Read-only texts can be marked and
/// copied. Scrolls what does not fit.
class PageView : public QScrollArea {
 public:
  enum class Change { Values, Layout };

  PageView(const engine::FormModel& page, PageListener listener = {}, QWidget* parent = nullptr);
  ~PageView() override;

  /// Keeps scroll position, tab and focus, and for a page with the same fields also their undo history.
  /// @returns whether the fields have changed.
  Change setPage(const engine::FormModel& page);

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// One field with its label, in a row of its group.
  struct Row {
    QLabel* label;  ///< null where the field labels itself
    FieldView* view;
  };
  struct Group {
    QGroupBox* box;
    QFormLayout* layout;
    std::size_t index;  ///< in the model
    std::vector<Row> rows;
  };

  void build();
  void makeGroups(std::optional<std::size_t> tab);
  void makeTabs();
  void makeGroup(const engine::FormGroup& group);
  [[nodiscard]] Row addField(const engine::FormField& field, QFormLayout& layout) const;
  void update();
  static void updateGroup(Group& group, const engine::FormGroup& model);
  void updateTabs();
  void retireRows();
  [[nodiscard]] std::string focusedPath() const;
  [[nodiscard]] FieldView* viewAt(const std::string& path) const;
  void focusField(const std::string& path);
  void alignLabels();
  [[nodiscard]] QWidget* firstEditor() const;
  void takeFocusBy(QWidget* editor);

  PageListener listener_;
  engine::FormModel page_;
  std::vector<Group> groups_;
  QPointer<QTabWidget> tabs_;
  bool isBuilt_ = false;
};

}  // namespace vlclientui::widgets
