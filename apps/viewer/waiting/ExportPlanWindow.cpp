#include "viewer/waiting/ExportPlanWindow.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

constexpr std::uint64_t mostUnaskedBytes = std::uint64_t{16} << 20U;
constexpr double mostUnaskedSeconds = 10;
constexpr int windowWidth = 460;

QString sizeText(std::uint64_t bytes) { return QLocale().formattedDataSize(static_cast<qint64>(bytes)); }

QString about(const QString& amount) { return ExportPlanWindow::tr("about %1").arg(amount); }

QString counted(double amount, const QString& one, const QString& many) {
  const int whole = static_cast<int>(std::ceil(amount));
  return whole == 1 ? one : many.arg(whole);
}

QString timeText(double seconds) {
  constexpr double minute = 60;
  if (seconds < minute)
    return counted(seconds, ExportPlanWindow::tr("1 second"), ExportPlanWindow::tr("%1 seconds"));
  return counted(seconds / minute, ExportPlanWindow::tr("1 minute"), ExportPlanWindow::tr("%1 minutes"));
}

QLabel* textLabel(const QString& name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

QString headline(const client::ExportForecast& plan) {
  if (plan.kept) {
    return ExportPlanWindow::tr("An export of this file broke off earlier; %1 of its pixels are kept.")
        .arg(sizeText(plan.kept->bytes));
  }
  return ExportPlanWindow::tr(
      "This export fetches its pixels from a server. Measured on a small part of it:");
}

}  // namespace

ExportPlanWindow::ExportPlanWindow(const client::ExportForecast& plan, QWidget* parent)
    : QDialog(parent), keep_(new QCheckBox(tr("&Keep what was fetched if the export breaks off"))) {
  setObjectName("ExportPlanWindow");
  setWindowTitle(tr("Before the export"));
  keep_->setObjectName("KeepPartial");
  keep_->setToolTip(
      tr("Pixels wait beside the file, in a folder that ends in .unfinished, and need its room"));
  keep_->setVisible(!plan.kept);
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addWidget(textLabel("PlanHeadline", headline(plan)));
  layout->addLayout(facts(plan));
  layout->addWidget(keep_);
  layout->addStretch(1);
  auto* box = new QDialogButtonBox(QDialogButtonBox::Cancel);
  addButtons(*box, plan);
  layout->addWidget(box);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  setMinimumWidth(windowWidth);
  host::openHelpByKey(*this, "Exporting_Image_Services");
}

QGridLayout* ExportPlanWindow::facts(const client::ExportForecast& plan) {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(1, 1);
  const auto addRow = [grid](const QString& caption, const QString& name, const QString& text) {
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(caption), row, 0, Qt::AlignTop);
    grid->addWidget(textLabel(name, text), row, 1);
  };
  if (plan.isRemote) {
    addRow(tr("Requests:"), "PlanRequests", QLocale().toString(static_cast<qulonglong>(plan.requests)));
    addRow(tr("To fetch:"), "PlanFetch", about(sizeText(plan.bytesToFetch)));
    addRow(tr("Time:"), "PlanTime", about(timeText(plan.seconds)));
  }
  addRow(tr("To write:"), "PlanWrite", about(sizeText(plan.bytesToWrite)));
  if (plan.room) {
    const QString folder = QString::fromStdString(plan.folder.string());
    addRow(tr("Free:"), "PlanRoom", tr("%1 in %2").arg(sizeText(*plan.room), folder));
  }
  for (const std::string& limit : plan.limits)
    addRow(tr("Note:"), "PlanLimit", QString::fromStdString(limit));
  return grid;
}

void ExportPlanWindow::addButtons(QDialogButtonBox& box, const client::ExportForecast& plan) {
  using client::Keeping;
  if (!plan.kept) return addButton(box, "BeginExport", tr("&Export"), Keeping::Begin);
  addButton(box, "GoOn", tr("&Go on"), Keeping::GoOn);
  addButton(box, "BeginAnew", tr("Begin &anew"), Keeping::Anew);
}

void ExportPlanWindow::addButton(QDialogButtonBox& box, const QString& name, const QString& text,
                                 client::Keeping keeping) {
  QPushButton* button = box.addButton(text, QDialogButtonBox::ActionRole);
  button->setObjectName(name);
  // The first one is what an Enter means.
  if (keeping != client::Keeping::Anew) button->setDefault(true);
  connect(button, &QPushButton::clicked, this, [this, keeping] {
    const bool keeps = keeping != client::Keeping::Begin || keep_->isChecked();
    keeping_ = keeps ? keeping : client::Keeping::Nothing;
    accept();
  });
}

bool isWorthAsking(const client::ExportForecast& plan) {
  if (plan.kept) return true;
  return plan.isRemote && (plan.bytesToFetch >= mostUnaskedBytes || plan.seconds >= mostUnaskedSeconds);
}

AfterBreak askAfterBreak(const QString& reason, std::uint64_t bytes, QWidget* parent) {
  QMessageBox box(QMessageBox::Question, ExportPlanWindow::tr("Not whole yet"), reason, QMessageBox::NoButton,
                  parent);
  box.setObjectName("BrokenOff");
  box.setTextFormat(Qt::PlainText);
  box.setInformativeText(
      ExportPlanWindow::tr("%1 of pixels are kept, so that the export can go on now or later.")
          .arg(sizeText(bytes)));
  QPushButton* goOn = box.addButton(ExportPlanWindow::tr("&Go on now"), QMessageBox::AcceptRole);
  QPushButton* keep = box.addButton(ExportPlanWindow::tr("&Keep for later"), QMessageBox::RejectRole);
  QPushButton* discard = box.addButton(ExportPlanWindow::tr("&Discard"), QMessageBox::DestructiveRole);
  goOn->setObjectName("GoOnNow");
  keep->setObjectName("KeepForLater");
  discard->setObjectName("DiscardKept");
  box.setDefaultButton(keep);
  box.setEscapeButton(keep);
  box.exec();
  if (box.clickedButton() == goOn) return AfterBreak::GoOn;
  return box.clickedButton() == discard ? AfterBreak::Discard : AfterBreak::Keep;
}

}  // namespace vlclientui::viewer
