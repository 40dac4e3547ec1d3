#include "viewer/window/SilenceLog.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QStringList>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "host/DesktopWindows.h"
#include "widgets/PathTexts.h"

namespace vlclientui::viewer {

namespace {

constexpr int shownFor = 10'000;  // milliseconds in the status bar

// Paths and names without blanks would be cut off at the column's edge.
QString withPlacesToBreak(const QString& text) {
  constexpr int longestRun = 40;
  QString broken;
  int run = 0;
  for (const QChar c : text) {
    run = c.isSpace() ? 0 : run + 1;
    broken += c;
    if (run < longestRun || c.isHighSurrogate()) continue;
    broken += QChar(0x200B);
    run = 0;
  }
  return broken;
}

QTableWidgetItem* reasonItem(const QString& reason) {
  auto* item = new QTableWidgetItem(withPlacesToBreak(reason));
  item->setToolTip(reason.toHtmlEscaped());
  return item;
}

QTableWidget* tableOf(const SilenceLog& log) {
  auto* table = new QTableWidget(static_cast<int>(log.entries().size()), 3);
  table->setObjectName("silenceTable");
  table->setHorizontalHeaderLabels(
      {SilenceLog::tr("Time"), SilenceLog::tr("Routine"), SilenceLog::tr("Reason")});
  table->horizontalHeader()->setStretchLastSection(true);
  table->verticalHeader()->hide();
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  int row = 0;
  for (const SilenceLog::Entry& entry : log.entries()) {
    table->setItem(row, 0, new QTableWidgetItem(entry.time.toString("HH:mm:ss")));
    table->setItem(row, 1, new QTableWidgetItem(entry.routine));
    table->setItem(row++, 2, reasonItem(entry.reason));
  }
  table->horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  table->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  table->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table->setAccessibleName(SilenceLog::tr("Messages"));
  return table;
}

void showList(QWidget& owner, const SilenceLog& log) {
  QDialog dialog(&owner);
  dialog.setObjectName("silenceList");
  dialog.setWindowTitle(SilenceLog::tr("Messages"));
  dialog.resize(820, 360);
  auto* rows = new QVBoxLayout(&dialog);
  auto* heading = new QLabel(log.entries().empty() ? SilenceLog::tr("Nothing has ended silently so far.")
                                                   : SilenceLog::tr("What ended silently, newest first:"));
  rows->addWidget(heading);
  rows->addWidget(tableOf(log));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  auto* copy = buttons->addButton(SilenceLog::tr("Cop&y"), QDialogButtonBox::ActionRole);
  copy->setObjectName("silenceCopy");
  QObject::connect(copy, &QPushButton::clicked, &dialog,
                   [&log] { QApplication::clipboard()->setText(log.text()); });
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  rows->addWidget(buttons);
  QWidget::setTabOrder(copy, buttons->button(QDialogButtonBox::Close));
  host::openHelpByKey(dialog, "Using_the_viewer");
  dialog.exec();
}

QMenu* menuOf(QMainWindow& window, const QString& title) {
  for (QAction* const action : window.menuBar()->actions()) {
    if (action->menu() && QString(action->text()).remove('&') == title) return action->menu();
  }
  return window.menuBar()->addMenu(title);
}

/// A text that is longer than its place widens no window.
QLabel* addLabel(QMainWindow& window) {
  auto* label = new QLabel;
  label->setObjectName("silenceLabel");
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  window.statusBar()->addWidget(label, 1);
  return label;
}

}  // namespace

SilenceLog::SilenceLog(const std::shared_ptr<const System>& system, QObject* parent)
    : QObject(parent), listener_([this, paths = widgets::pathTextsOf(system)](const SilentEnd& end) {
        entries_.push_front({QTime::currentTime(), QString::fromStdString(end.routine),
                             QString::fromStdString(paths.shown(end.reason))});
        if (entries_.size() > limit) entries_.pop_back();
        emit told();
      }) {}

QString SilenceLog::text() const {
  QStringList lines;
  for (const Entry& entry : entries_)
    lines << entry.time.toString("HH:mm:ss") + "\t" + entry.routine + "\t" + entry.reason;
  return lines.join('\n');
}

SilenceLog* followSilence(QMainWindow& window, const std::shared_ptr<const System>& system,
                          const QString& menu) {
  auto* const log = new SilenceLog(system, &window);
  QLabel* const label = addLabel(window);
  auto* const fading = new QTimer(label);
  fading->setSingleShot(true);
  QObject::connect(fading, &QTimer::timeout, label, &QLabel::clear);
  QObject::connect(log, &SilenceLog::told, label, [log, label, fading] {
    label->setText(log->entries().front().reason);
    label->setToolTip(log->entries().front().routine);
    fading->start(shownFor);
  });
  auto* const open = new QAction(SilenceLog::tr("&Messages\u2026"), &window);
  open->setObjectName("SilentEnds");
  QObject::connect(open, &QAction::triggered, &window, [&window, log] { showList(window, *log); });
  menuOf(window, menu)->addAction(open);
  return log;
}

}  // namespace vlclientui::viewer
