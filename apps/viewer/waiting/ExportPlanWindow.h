#pragma once

#include <QDialog>

#include "client/facade/ExportForecast.h"

class QCheckBox;
class QDialogButtonBox;
class QGridLayout;

namespace vlclientui::viewer {

/// Tells what an export is going to take, before its first byte, and what an earlier export to the same file
/// kept. The person decides whether to begin and what becomes of pixels where it breaks off.
class ExportPlanWindow : public QDialog {
  Q_OBJECT

 public:
  explicit ExportPlanWindow(const client::ExportForecast& plan, QWidget* parent = nullptr);

  /// What was decided, of a window that was accepted.
  [[nodiscard]] client::Keeping keeping() const { return keeping_; }

 private:
  [[nodiscard]] QGridLayout* facts(const client::ExportForecast& plan);
  void addButtons(QDialogButtonBox& box, const client::ExportForecast& plan);
  void addButton(QDialogButtonBox& box, const QString& name, const QString& text, client::Keeping keeping);

  QCheckBox* keep_;
  client::Keeping keeping_ = client::Keeping::Nothing;
};

/// Whether a person is to see the plan first: it is large, or something is kept.
[[nodiscard]] bool isWorthAsking(const client::ExportForecast& plan);

/// What a person wants done with the pixels of an export that broke off.
enum class AfterBreak { GoOn, Keep, Discard };

/// Asks for it. @param reason why it broke off, for a person. @param bytes that are kept.
[[nodiscard]] AfterBreak askAfterBreak(const QString& reason, std::uint64_t bytes, QWidget* parent);

}  // namespace vlclientui::viewer
