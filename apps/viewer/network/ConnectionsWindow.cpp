#include "viewer/network/ConnectionsWindow.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "host/DesktopWindows.h"

namespace vlclientui::viewer {
namespace {

using client::Connection;

constexpr QSize firstSize(760, 380);

QString text(const std::string& words) { return QString::fromStdString(words); }

QTreeWidgetItem* rowOf(const Connection& connection) {
  auto* const row = new QTreeWidgetItem({text(connection.name), text(connection.address),
                                         text(signInWords(connection)), text(keptWords(connection))});
  for (int column = 0; column < row->columnCount(); ++column)
    row->setToolTip(column, row->text(column).toHtmlEscaped());
  return row;
}

class WaitingPointer {
 public:
  WaitingPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  WaitingPointer(const WaitingPointer&) = delete;
  WaitingPointer& operator=(const WaitingPointer&) = delete;
  ~WaitingPointer() { QApplication::restoreOverrideCursor(); }
};

}  // namespace

ConnectionsWindow::ConnectionsWindow(client::ConnectionBook& book,
                                     std::shared_ptr<client::CatalogueServer> catalogue, QWidget* parent)
    : QDialog(parent), book_(book), catalogue_(std::move(catalogue)) {
  setObjectName("ConnectionsWindow");
  setWindowTitle(tr("Connections"));
  resize(firstSize);
  news_ = new QLabel;
  news_->setObjectName("ConnectionNews");
  news_->setTextFormat(Qt::PlainText);
  news_->setWordWrap(true);
  news_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* const label = new QLabel(tr("Ser&vers by names of your own:"));
  auto* const middle = new QHBoxLayout;
  middle->addWidget(buildList(), 1);
  middle->addWidget(buildButtons());
  label->setBuddy(list_);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  // Enter in the list edits a connection; it must not close the window too.
  buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
  connect(buttons, &QDialogButtonBox::rejected, this, &ConnectionsWindow::reject);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(label);
  rows->addLayout(middle, 1);
  rows->addWidget(news_);
  rows->addWidget(buildWait());
  rows->addWidget(buttons);
  host::openHelpByKey(*this, "Connections");
  listAgain({});
  askDesktop();
}

QWidget* ConnectionsWindow::buildList() {
  list_ = new QTreeWidget;
  list_->setObjectName("Connections");
  list_->setAccessibleName(tr("Connections"));
  list_->setHeaderLabels({tr("Name"), tr("Address"), tr("Signs in with"), tr("Kept in")});
  list_->setRootIsDecorated(false);
  list_->setAllColumnsShowFocus(true);
  list_->setUniformRowHeights(true);
  list_->header()->setStretchLastSection(true);
  connect(list_, &QTreeWidget::itemSelectionChanged, this, &ConnectionsWindow::enableButtons);
  connect(list_, &QTreeWidget::itemActivated, this, &ConnectionsWindow::edit);
  return list_;
}

QPushButton* ConnectionsWindow::button(const char* name, const QString& caption, const QString& toolTip,
                                       void (ConnectionsWindow::*slot)()) {
  auto* const made = new QPushButton(caption);
  made->setObjectName(name);
  made->setToolTip(toolTip);
  made->setAutoDefault(false);
  connect(made, &QPushButton::clicked, this, slot);
  return made;
}

QWidget* ConnectionsWindow::buildButtons() {
  auto* const column = new QWidget;
  auto* const rows = new QVBoxLayout(column);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(
      button("AddConnection", tr("&Add\u2026"), tr("Give a server a name"), &ConnectionsWindow::add));
  edit_ = button("EditConnection", tr("&Edit\u2026"), tr("Change the picked connection"),
                 &ConnectionsWindow::edit);
  remove_ = button("RemoveConnection", tr("&Remove"), tr("Remove it, with its password or token"),
                   &ConnectionsWindow::remove);
  try_ =
      button("TryConnection", tr("&Try"), tr("Ask its server for services"), &ConnectionsWindow::tryPicked);
  for (QPushButton* const each : {edit_, remove_, try_}) rows->addWidget(each);
  rows->addStretch(1);
  return column;
}

QWidget* ConnectionsWindow::buildWait() {
  auto* const line = new QWidget;
  auto* const cells = new QHBoxLayout(line);
  cells->setContentsMargins(0, 0, 0, 0);
  progress_ = new QProgressBar;
  progress_->setRange(0, 0);
  progress_->setTextVisible(false);
  progress_->setAccessibleName(tr("Waiting"));
  giveUp_ = button("CancelTrial", tr("Give &up"), tr("Stop waiting"), &ConnectionsWindow::giveUp);
  cells->addWidget(progress_, 1);
  cells->addWidget(giveUp_);
  line->setObjectName("TrialLine");
  line->hide();
  return line;
}

void ConnectionsWindow::askDesktop() {
  asking_ = std::make_unique<Errand>([&book = book_] { return book.problemOfDesktop(); });
  connect(asking_.get(), &Errand::done, this, [this](Errand::End, const QString& problem) {
    desktop_ = problem.toStdString();
    if (editor_) editor_->tellOfDesktop(*desktop_);
  });
  asking_->start();
}

template <class Step>
bool ConnectionsWindow::succeeds(Step step) {
  try {
    const WaitingPointer pointer;
    step();
    return true;
  } catch (const RuntimeFailure& failure) {
    news_->setText(text(failure.description()));
    return false;
  }
}

void ConnectionsWindow::listAgain(const std::string& name) {
  list_->clear();
  succeeds([&] {
    for (const Connection& connection : book_.connections()) {
      QTreeWidgetItem* const row = rowOf(connection);
      list_->addTopLevelItem(row);
      if (connection.name == name) list_->setCurrentItem(row);
    }
  });
  for (int column = 0; column + 1 < list_->columnCount(); ++column) list_->resizeColumnToContents(column);
  enableButtons();
}

void ConnectionsWindow::enableButtons() {
  const bool isFree = !isWaiting();
  const bool isPicked = !list_->selectedItems().isEmpty();
  for (QPushButton* const each : {edit_, remove_, try_}) each->setEnabled(isPicked && isFree);
}

std::optional<Connection> ConnectionsWindow::picked() const {
  const auto rows = list_->selectedItems();
  if (rows.isEmpty() || isWaiting()) return std::nullopt;
  return book_.find(rows.front()->text(0).toStdString());
}

void ConnectionsWindow::add() { describe(ConnectionDraft::ofNew()); }

void ConnectionsWindow::edit() {
  succeeds([this] {
    if (const auto connection = picked())
      QMetaObject::invokeMethod(
          this, [this, connection] { describe(ConnectionDraft::of(*connection)); }, Qt::QueuedConnection);
  });
}

void ConnectionsWindow::describe(ConnectionDraft draft) {
  ConnectionEditor editor(
      std::move(draft), book_.file().string(),
      [&book = book_](const client::ConnectionEdit& edit) { return book.save(edit); }, this);
  editor_ = &editor;
  if (desktop_) editor.tellOfDesktop(*desktop_);
  if (editor.exec() != QDialog::Accepted) return;
  listAgain(editor.name());
  news_->setText((tr("Saved %1.").arg(text(editor.name())) + " " + editor.saved()).trimmed());
}

void ConnectionsWindow::remove() {
  const auto rows = list_->selectedItems();
  if (rows.isEmpty()) return;
  const QString name = rows.front()->text(0);
  QMessageBox question(QMessageBox::Question, tr("Remove connection"),
                       tr("Remove the connection \"%1\", with its password or token?").arg(name),
                       QMessageBox::Yes | QMessageBox::Cancel, this);
  question.setTextFormat(Qt::PlainText);
  question.setDefaultButton(QMessageBox::Cancel);
  host::openHelpByKey(question, "Connections");
  if (question.exec() != QMessageBox::Yes) return;
  removeNow(name);
}

void ConnectionsWindow::removeNow(const QString& name) {
  begin([&book = book_, name = name.toStdString()] { return book.remove(name); }, Waiting::SeenLate,
        [this, name](Errand::End end, const QString& words) { endRemoving(name, end, words); });
  news_->setText(tr("Removing %1\u2026").arg(name));
}

// The file comes first: what was given up is the wait for the desktop.
void ConnectionsWindow::endRemoving(const QString& name, Errand::End end, const QString& words) {
  QString left = words;
  if (end == Errand::End::GivenUp) left = tr("Its secret may still be in the secret store of the desktop.");
  news_->setText(end == Errand::End::Failed ? words : (tr("Removed %1.").arg(name) + " " + left).trimmed());
  listAgain({});
}

void ConnectionsWindow::tryPicked() {
  std::optional<Connection> connection;
  if (!succeeds([&] { connection = picked(); }) || !connection) return;
  begin(
      [&book = book_, catalogue = catalogue_, connection = *connection] {
        return host::tryConnection(book, *catalogue, connection, std::nullopt).words;
      },
      Waiting::Seen,
      [this](Errand::End end, const QString& words) {
        news_->setText(end == Errand::End::GivenUp ? tr("The trial was given up.") : words);
      });
  news_->setText(tr("Asking %1\u2026").arg(text(connection->address)));
}

void ConnectionsWindow::begin(Errand::Work work, Waiting waiting, EndOfErrand end) {
  auto* const line = findChild<QWidget*>("TrialLine");
  errand_ = std::make_unique<Errand>(std::move(work));
  line->setVisible(waiting == Waiting::Seen);
  connect(errand_.get(), &Errand::overdue, line, &QWidget::show);
  connect(errand_.get(), &Errand::done, this,
          [this, line, end = std::move(end)](Errand::End how, const QString& words) {
            errand_.release()->deleteLater();
            line->hide();
            end(how, words);
            enableButtons();
            list_->setFocus();
          });
  errand_->start();
  enableButtons();
}

void ConnectionsWindow::giveUp() {
  if (errand_) errand_->giveUp();
}

}  // namespace vlclientui::viewer
