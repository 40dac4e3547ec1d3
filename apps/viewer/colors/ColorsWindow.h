#pragma once

#include <QDialog>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "viewer/colors/ColoredServices.h"
#include "viewer/colors/ColorsDraft.h"
#include "viewer/colors/ColorsReader.h"

class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;

namespace vlclientui::viewer {

class LegendView;
class NumberBox;

/// How the picked service looks: which bands become which colors, from the lowest to the highest value. The
/// map follows at once; the host keeps what was chosen. It stays open beside the map, and follows what is
/// picked.
class ColorsWindow : public QDialog {
  Q_OBJECT

 public:
  explicit ColorsWindow(ColoredServices& services, QWidget* parent = nullptr);

  /// @param reference of a service; empty for none.
  void showService(const QString& reference);
  /// Nothing while it is being read, and where that failed.
  [[nodiscard]] const std::optional<ColorsDraft>& draft() const { return draft_; }

 private:
  struct BandRow {
    QLabel* label = nullptr;
    QComboBox* band = nullptr;
    NumberBox* low = nullptr;
    NumberBox* high = nullptr;
  };

  void makeColoring(QGridLayout& grid);
  void makeRow(QGridLayout& grid, std::size_t place);
  [[nodiscard]] QWidget* makeButtons();
  void makeSpanButtons(QGridLayout& grid);
  void makeChoices(QGridLayout& grid);
  [[nodiscard]] QPushButton* spanButton(const char* name, const QString& text, SpanBy by);
  void begin(const client::ServiceColors& colors);
  void follow();
  void change(const std::function<void(ColorsDraft&)>& what);
  void keep();
  void showDraft();
  void showChoices(const ColorsDraft& draft);
  void showRow(std::size_t place);
  void showState(const QString& text);
  void followServices();

  ColoredServices& services_;
  ColorsReader* reader_;
  QString reference_;
  std::shared_ptr<const client::ServiceDrawing> drawing_;  ///< that is read
  std::optional<ColorsDraft> draft_;
  bool isShowing_ = false;
  QTimer soon_;
  QWidget* choices_;
  QComboBox* coloring_;
  std::array<BandRow, 3> rows_;
  QPushButton* usual_ = nullptr;
  QPushButton* whole_ = nullptr;
  QPushButton* type_ = nullptr;
  QComboBox* ramp_;
  NumberBox* lift_;
  NumberBox* exaggeration_;
  QLabel* rampLabel_;
  QLabel* liftLabel_;
  QLabel* exaggerationLabel_;
  QLabel* state_;
  LegendView* legend_;
  QPushButton* reset_ = nullptr;
};

}  // namespace vlclientui::viewer
