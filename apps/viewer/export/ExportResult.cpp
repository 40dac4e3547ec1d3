#include "viewer/export/ExportResult.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/DesktopWindows.h"
#include "viewer/export/XmlPrint.h"

namespace vlclientui::viewer {
namespace {

constexpr int iconSize = 32;
constexpr int leastWidth = 560;
constexpr int detailsHeight = 260;

// For texts of any length; short ones stand in a line with their captions.
QLabel* wrapped(const QString& name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

// A path has no places to be wrapped at.
QLineEdit* copyable(const QString& name, const QString& text) {
  auto* line = new QLineEdit(text);
  line->setObjectName(name);
  line->setReadOnly(true);
  return line;
}

QPlainTextEdit* requestView(const std::string& request) {
  auto* view = new QPlainTextEdit(QString::fromStdString(indentedXml(request)));
  view->setObjectName("GetImageDocument");
  view->setReadOnly(true);
  view->setTabChangesFocus(true);
  view->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  return view;
}

bool isWritten(const ExportOutcome& outcome) { return outcome.attempt == PickedService::Attempt::Written; }

QString sizeText(const ExportOutcome& outcome) {
  const QString bytes =
      QLocale().formattedDataSize(QFileInfo(QString::fromStdString(outcome.file.string())).size());
  return ExportResult::tr("%1 columns, %2 rows, %3").arg(outcome.columns).arg(outcome.rows).arg(bytes);
}

QString timeText(std::chrono::milliseconds took) {
  const double seconds = static_cast<double>(took.count()) / 1000;
  if (seconds < 60) return ExportResult::tr("%1 seconds").arg(QLocale().toString(seconds, 'f', 1));
  const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(took);
  const auto rest = std::chrono::duration_cast<std::chrono::seconds>(took - minutes);
  return ExportResult::tr("%1 minutes, %2 seconds").arg(minutes.count()).arg(rest.count());
}

}  // namespace

ExportResult::ExportResult(const ExportOutcome& outcome, QWidget* parent) : QDialog(parent) {
  setObjectName("ExportResult");
  setWindowTitle(isWritten(outcome) ? tr("Exported") : tr("Not exported"));
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addWidget(headline(outcome));
  layout->addLayout(facts(outcome));
  layout->addWidget(details(outcome.request), 1);
  layout->addStretch(0);
  QDialogButtonBox* box = buttons(outcome);
  layout->addWidget(box);
  box->button(QDialogButtonBox::Close)->setFocus();
  host::openHelpByKey(*this, "Exporting_Image_Services");
  setMinimumWidth(leastWidth);
}

// The window grows for them, and shrinks without.
QWidget* ExportResult::details(const std::string& request) {
  auto* const part = new QWidget;
  auto* const rows = new QVBoxLayout(part);
  rows->setContentsMargins(0, 0, 0, 0);
  auto* const toggle = new QToolButton;
  toggle->setObjectName("Details");
  toggle->setText(tr("&Details"));
  toggle->setToolTip(tr("The element that the export window handed back"));
  toggle->setCheckable(true);
  toggle->setAutoRaise(true);
  toggle->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  toggle->setArrowType(Qt::RightArrow);
  QPlainTextEdit* const view = requestView(request);
  view->setAccessibleName(tr("Handed back by the export window"));
  view->setMinimumHeight(detailsHeight);
  view->hide();
  connect(toggle, &QToolButton::toggled, this, [this, toggle, view](bool isOn) {
    toggle->setArrowType(isOn ? Qt::DownArrow : Qt::RightArrow);
    view->setVisible(isOn);
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()) > 0 ? layout()->totalHeightForWidth(width())
                                                               : sizeHint().height());
  });
  rows->addWidget(toggle, 0, Qt::AlignLeft);
  rows->addWidget(view, 1);
  return part;
}

QWidget* ExportResult::headline(const ExportOutcome& outcome) const {
  auto* line = new QWidget;
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* icon = new QLabel;
  const auto kind = isWritten(outcome) ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxWarning;
  icon->setPixmap(style()->standardIcon(kind).pixmap(iconSize));
  layout->addWidget(icon);
  const QString text = isWritten(outcome) ? tr("The image was exported.") : tr("Nothing was exported.");
  auto* label = new QLabel(text);
  label->setObjectName("ExportHeadline");
  layout->addWidget(label, 1);
  return line;
}

QGridLayout* ExportResult::facts(const ExportOutcome& outcome) const {
  auto* grid = new QGridLayout;
  grid->setColumnStretch(1, 1);
  const auto addRow = [grid](const QString& caption, QWidget* value, Qt::Alignment alignment = {}) {
    const int row = grid->rowCount();
    auto* label = new QLabel(caption);
    label->setBuddy(value);
    grid->addWidget(label, row, 0, alignment);
    grid->addWidget(value, row, 1);
  };
  addRow(tr("&File:"), copyable("ExportedFile", QString::fromStdString(outcome.file.string())));
  if (isWritten(outcome)) {
    auto* size = new QLabel(sizeText(outcome));
    size->setObjectName("ExportedSize");
    size->setContentsMargins(3, 0, 0, 0);
    addRow(tr("Size:"), size);
    auto* time = new QLabel(timeText(outcome.took));
    time->setObjectName("ExportTime");
    time->setContentsMargins(3, 0, 0, 0);
    addRow(tr("Time:"), time);
  } else if (!outcome.problem.empty()) {
    addRow(tr("Reason:"), wrapped("ExportProblem", QString::fromStdString(outcome.problem)), Qt::AlignTop);
  }
  return grid;
}

QDialogButtonBox* ExportResult::buttons(const ExportOutcome& outcome) {
  auto* box = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  box->button(QDialogButtonBox::Close)->setDefault(true);
  const auto add = [box](const char* name, const QString& text) {
    QPushButton* const button = box->addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    return button;
  };
  if (outcome.job) {
    QPushButton* const job = add("SaveJob", tr("Save as &job..."));
    job->setToolTip(tr("The whole export as a file, by which vlhost makes it again"));
    connect(job, &QPushButton::clicked, this, &ExportResult::saveJobWanted);
  }
  if (!isWritten(outcome)) return box;
  connect(add("AddToMap", tr("Show in &map")), &QPushButton::clicked, this, [this] {
    emit addToMapWanted();
    accept();
  });
  connect(add("OpenFolder", tr("&Open folder")), &QPushButton::clicked, this,
          &ExportResult::openFolderWanted);
  connect(add("CopyPath", tr("&Copy path")), &QPushButton::clicked, this, [file = outcome.file] {
    QGuiApplication::clipboard()->setText(QString::fromStdString(file.string()));
  });
  return box;
}

}  // namespace vlclientui::viewer
