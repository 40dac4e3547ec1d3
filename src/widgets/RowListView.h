#pragma once

#include <QTreeView>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "engine/ListModel.h"

namespace vlclientui::widgets {

class RowTableModel;

/// A list of rows under columns, searched by typing. Columns share the width in the model's proportions until
/// a person moves a border.
class RowListView : public QTreeView {
 public:
  /// Call these last in an event: they may destroy the view.
  struct Listener {
    std::function<void(std::size_t row)> clicked;    ///< a click, or another row by keyboard
    std::function<void(std::size_t row)> activated;  ///< a double click, or Enter on the selected row
    std::function<void()> backspace;
  };

  /// A property of the widget: the path of the folder whose rows it shows.
  static constexpr const char* placeProperty = "listPlace";

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
  void tellPlace();
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

/// Shares a width among columns in proportion, with a least width for each. The sum is the given width, or
/// more when the least widths need it.
[[nodiscard]] std::vector<int> shareWidth(int width, const std::vector<double>& proportions,
                                          const std::vector<int>& leastWidths);

/// Least widths of columns, made less where they do not fit beside each other. The first stays.
/// @param narrowest that one is made.
[[nodiscard]] std::vector<int> cutToFit(int width, std::vector<int> leastWidths, int narrowest);

}  // namespace vlclientui::widgets
