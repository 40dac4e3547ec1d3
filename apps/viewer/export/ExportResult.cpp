#include "viewer/export/ExportResult.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "host/DesktopWindows.h"
#include "viewer/export/XmlPrint.h"

namespace vlclientui::viewer {
namespace {

constexpr int iconSize = 32;

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

}  // namespace

ExportResult::ExportResult(const ExportOutcome& outcome, QWidget* parent) : QDialog(parent) {
  setObjectName("ExportResult");
  setWindowTitle(isWritten(outcome) ? tr("Exported") : tr("Not exported"));
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(10);
  layout->addWidget(headline(outcome));
  layout->addLayout(facts(outcome));
  QPlainTextEdit* request = requestView(outcome.request);
  auto* heading = new QLabel(tr("&Handed back by the export window"));
  heading->setBuddy(request);
  layout->addWidget(heading);
  layout->addWidget(request, 1);
  QDialogButtonBox* box = buttons(isWritten(outcome));
  layout->addWidget(box);
  box->button(QDialogButtonBox::Close)->setFocus();
  host::openHelpByKey(*this, "Exporting_Image_Services");
  resize(560, 560);
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
  } else if (!outcome.problem.empty()) {
    addRow(tr("Reason:"), wrapped("ExportProblem", QString::fromStdString(outcome.problem)), Qt::AlignTop);
  }
  return grid;
}

QDialogButtonBox* ExportResult::buttons(bool exported) {
  auto* box = new QDialogButtonBox(QDialogButtonBox::Close);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);
  if (!exported) return box;
  QPushButton* add = box->addButton(tr("&Add to the map"), QDialogButtonBox::ActionRole);
  add->setObjectName("AddToMap");
  connect(add, &QPushButton::clicked, this, [this] {
    emit addToMapWanted();
    accept();
  });
  QPushButton* open = box->addButton(tr("&Open folder"), QDialogButtonBox::ActionRole);
  open->setObjectName("OpenFolder");
  connect(open, &QPushButton::clicked, this, &ExportResult::openFolderWanted);
  box->button(QDialogButtonBox::Close)->setDefault(true);
  return box;
}

}  // namespace vlclientui::viewer
