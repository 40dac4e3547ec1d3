#pragma once

#include <QTreeView>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "engine/ListModel.h"

namespace vlclientui::widgets {

class RowTableModel;

/// A list of rows with columns that a person can read, search by typing, and act on. Columns share the
/// width by the model's proportions until a person has moved a border.
class RowListView : public QTreeView {
 public:
  /// Called last in an event, since a call may take the view away.
  struct Listener {
    std::function<void(std::size_t row)> clicked;    ///< a click, or another row by keyboard
    std::function<void(std::size_t row)> activated;  ///< a double click, or Enter on the selected row
    std::function<void()> backspace;
  };

  RowListView(std::shared_ptr<const engine::ListModel> list, Listener listener, QWidget* parent = nullptr);

  /// No row is selected afterwards, the first is marked, and the list stands at its top. Columns of the same
  /// names keep widths that a person gave them.
  void setList(std::shared_ptr<const engine::ListModel> list);
  [[nodiscard]] std::optional<std::size_t> selectedRow() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void setUp();
  void arrangeColumns();
  void spanMessages();
  void moveByKey(QKeyEvent* event);
  void activateByKey();
  void markFirstRow();
  void selectMarked();
  void report(std::size_t row);
  void activate(const QModelIndex& index);

  RowTableModel* model_;
  Listener listener_;
  std::optional<std::size_t> reported_;
  bool doubleClicked_ = false;
  bool arranging_ = false;
  bool hasPersonsWidths_ = false;
};

/// Widths of columns that share a width by their proportions, none below its least width. Their sum is the
/// width, or more where the least widths need it.
[[nodiscard]] std::vector<int> shareWidth(int width, const std::vector<double>& proportions,
                                          const std::vector<int>& leastWidths);

}  // namespace vlclientui::widgets
