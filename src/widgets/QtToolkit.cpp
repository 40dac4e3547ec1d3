#include "widgets/QtToolkit.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPointer>
#include <QStandardPaths>
#include <exception>
#include <utility>

#include "contracts/Operations.h"
#include "contracts/controls/Controls.h"
#include "widgets/FileFilters.h"
#include "widgets/FormWindow.h"
#include "widgets/HelpKey.h"
#include "widgets/QtVersions.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr std::int32_t twipsPerPixel = 15;

QMessageBox::Icon iconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Exclamation:
      return QMessageBox::Warning;
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::Ok:
      break;
  }
  return QMessageBox::Ok;
}

MessageAnswer answerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return MessageAnswer::Yes;
    case QMessageBox::No:
      return MessageAnswer::No;
    case QMessageBox::Cancel:
      return MessageAnswer::Cancel;
    default:
      return MessageAnswer::Ok;
  }
}

/// The answer of a message that is closed without one.
MessageAnswer dismissalOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::YesNo:
      return MessageAnswer::No;
    case MessageButtons::Ok:
      return MessageAnswer::Ok;
    default:
      return MessageAnswer::Cancel;
  }
}

/// A dialog over another window, which may be destroyed meanwhile and takes the dialog with it.
template <class Dialog>
class DialogOver {
 public:
  explicit DialogOver(QWidget* owner) : dialog_(new Dialog(owner)) {}
  DialogOver(const DialogOver&) = delete;
  DialogOver& operator=(const DialogOver&) = delete;
  ~DialogOver() { delete dialog_.data(); }

  Dialog* operator->() const { return dialog_.data(); }
  [[nodiscard]] Dialog* get() const { return dialog_.data(); }
  /// Whether the dialog still exists.
  explicit operator bool() const { return !dialog_.isNull(); }

 private:
  QPointer<Dialog> dialog_;
};

/// A name without a suffix gets that of the chosen filter; a person looks for the file by that name.
void giveSuffixes(QFileDialog* dialog) {
  const auto follow = [dialog](const QString& filter) { dialog->setDefaultSuffix(suffixOf(filter)); };
  follow(dialog->selectedNameFilter());
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog, follow);
}

/// The form's window around a widget; it may itself be inside a window of the host.
const FormWindow* formWindowAround(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    if (const auto* const found = dynamic_cast<const FormWindow*>(widget)) return found;
  }
  return nullptr;
}

/// Keeps the window style that the logic set.
constexpr const char* styleProperty = "windowStyle";

/// The file or folder that a person picks; empty for Cancel.
QString pick(const DialogOver<QFileDialog>& dialog, const std::string& title,
             const QString& startFolder = QDir::homePath()) {
  if (!title.empty()) dialog->setWindowTitle(toQt(title));
  // Dialogs do not remember the folder of an earlier run.
  dialog->setDirectory(startFolder);
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!accepted || !dialog || dialog->selectedFiles().isEmpty()) return {};
  return dialog->selectedFiles().first();
}

/// A proposed folder is made only once something is written into it; until then the one above is the place.
QString nearestFolder(QString folder) {
  while (!QFileInfo(folder).isDir() && folder.contains(QLatin1Char('/'))) {
    folder.truncate(folder.lastIndexOf(QLatin1Char('/')));
  }
  return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

QString documentsFolder() {
  return nearestFolder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

}  // namespace

QtToolkit::QtToolkit(std::shared_ptr<const System> system)
    : QtToolkit(system, pathTextsOf(system), ViewRegistry::shipped()) {}

QtToolkit::QtToolkit(std::shared_ptr<const System> system, PathTexts paths, ViewRegistry views)
    : system_(std::move(system)), paths_(std::move(paths)), views_(std::move(views)) {}

QtToolkit::~QtToolkit() {
  for (const auto& [form, window] : formWindows_) delete window.data();
}

MessageAnswer QtToolkit::doShowMessage(const MessageBox& box) {
  const DialogOver<QMessageBox> message(activeWindow());
  message->setWindowTitle(box.title.empty() ? QGuiApplication::applicationDisplayName() : toQt(box.title));
  message->setTextFormat(Qt::PlainText);
  message->setText(toQt(paths_.shown(box.text)));
  message->setIcon(iconOf(box.icon));
  message->setStandardButtons(buttonsOf(box.buttons));
  if (const std::string page = helpPageAround(message->parentWidget()); !page.empty()) {
    openHelpByKey(*message.get(), page);
  }
  const int button = message->exec();
  return message ? answerOf(button) : dismissalOf(box.buttons);
}

void QtToolkit::reportFailure(const std::string& description) {
  const MessageBox box{description, {}, MessageIcon::Critical, MessageButtons::Ok};
  PersonInPlace* const person = PersonInPlace::ofThread();
  person ? person->answer(box) : doShowMessage(box);
}

std::optional<std::string> QtToolkit::openFile(const FileDialog& dialog) {
  return chosenFile(dialog, [&] { return askForFile(dialog); });
}

std::optional<std::string> QtToolkit::saveFile(const FileDialog& dialog) {
  return chosenFile(dialog, [&] { return askForTarget(dialog); });
}

std::optional<std::string> QtToolkit::askForFile(const FileDialog& dialog) {
  const DialogOver<QFileDialog> window(activeWindow());
  window->setFileMode(QFileDialog::ExistingFile);
  window->setNameFilters(nameFiltersOf(toQt(dialog.filter)));
  if (!dialog.fileName.empty()) window->selectFile(toQt(system_->nativePath(dialog.fileName)));
  const QString file = pick(window, dialog.title);
  if (file.isEmpty()) return std::nullopt;
  return system_->logicPath(fromQt(file));
}

std::optional<std::string> QtToolkit::askForTarget(const FileDialog& dialog) {
  const DialogOver<QFileDialog> window(activeWindow());
  window->setAcceptMode(QFileDialog::AcceptSave);
  window->setFileMode(QFileDialog::AnyFile);
  window->setOption(QFileDialog::DontConfirmOverwrite, !dialog.asksBeforeOverwriting);
  window->setNameFilters(nameFiltersOf(toQt(dialog.filter)));
  giveSuffixes(window.get());
  const QString named = dialog.fileName.empty() ? QString() : toQt(system_->nativePath(dialog.fileName));
  const QString proposed =
      dialog.startFolder.empty() ? QString() : toQt(system_->nativePath(dialog.startFolder));
  const QString folder = named.isEmpty() ? proposed : QFileInfo(named).absolutePath();
  if (!named.isEmpty()) window->selectFile(QFileInfo(named).fileName());
  const QString file =
      pick(window, dialog.title, folder.isEmpty() ? documentsFolder() : nearestFolder(folder));
  if (file.isEmpty()) return std::nullopt;
  return system_->logicPath(fromQt(file));
}

std::optional<FolderChoice> QtToolkit::browseForFolder(const FolderDialog& dialog) {
  return chosenFolder(dialog, [&] { return askForFolder(dialog); });
}

std::optional<FolderChoice> QtToolkit::askForFolder(const FolderDialog& dialog) {
  QWidget* owner = windows_.widgetOf(dialog.owner);
  const DialogOver<QFileDialog> window(owner ? owner->window() : activeWindow());
  window->setFileMode(QFileDialog::Directory);
  window->setOption(QFileDialog::ShowDirsOnly);
  const QString folder = pick(window, dialog.title);
  if (folder.isEmpty()) return std::nullopt;
  return FolderChoice{system_->logicPath(fromQt(folder)), fromQt(QFileInfo(folder).fileName())};
}

void QtToolkit::setPointer(Pointer pointer) {
  if (pointer == Pointer::Default) {
    if (std::exchange(pointerIsSet_, false)) QGuiApplication::restoreOverrideCursor();
    return;
  }
  const QCursor cursor(pointer == Pointer::Hourglass ? Qt::WaitCursor : Qt::ArrowCursor);
  if (std::exchange(pointerIsSet_, true)) {
    QGuiApplication::changeOverrideCursor(cursor);
  } else {
    QGuiApplication::setOverrideCursor(cursor);
  }
}

void QtToolkit::letPendingEventsRun() { QCoreApplication::processEvents(); }

void QtToolkit::setClipboardText(const std::string& text) {
  QGuiApplication::clipboard()->setText(toQt(text));
}

void QtToolkit::tell(const std::string& news) { told.raise(toQt(paths_.shown(news))); }

void QtToolkit::createView(Form& form) { formWindows_[&form] = new FormWindow(form, views_, paths_); }

void QtToolkit::destroyView(Form& form) {
  FormWindow* window = formWindow(form);
  formWindows_.erase(&form);
  if (!window) return;
  window->retire();
  // An event of the window may still be running.
  window->deleteLater();
}

void QtToolkit::runModal(Form& form) {
  const QPointer<FormWindow> window = standingWindow(form);
  if (!window) return;
  window->run(activeWindow());
  // The program is quitting, or the owner has destroyed the window.
  if (window ? window->form() != nullptr : form.loaded()) form.userCloses();
  delete window.data();
}

WindowHandle QtToolkit::windowOf(const Form& form) { return windows_.handleOf(standingWindow(form)); }

std::optional<WindowRect> QtToolkit::windowRect(WindowHandle window) {
  const QWidget* widget = windows_.widgetOf(window);
  if (!widget) return std::nullopt;
  const QPoint corner = widget->mapToGlobal(QPoint(0, 0));
  return WindowRect{corner.x(), corner.y(), corner.x() + widget->width(), corner.y() + widget->height()};
}

std::int32_t QtToolkit::styleOf(WindowHandle window) {
  const QWidget* widget = windows_.widgetOf(window);
  return widget ? widget->property(styleProperty).toInt() : 0;
}

void QtToolkit::setStyle(WindowHandle window, std::int32_t style) {
  if (QWidget* widget = windows_.widgetOf(window)) widget->setProperty(styleProperty, style);
}

WindowHandle QtToolkit::setParent(WindowHandle window, WindowHandle parent) {
  QWidget* widget = windows_.widgetOf(window);
  QWidget* newParent = windows_.widgetOf(parent);
  if (!widget || (parent != 0 && !newParent)) return 0;
  if (newParent == widget || (newParent && widget->isAncestorOf(newParent))) return 0;
  const WindowHandle old = windows_.handleOf(widget->parentWidget());
  if (auto* formWindow = dynamic_cast<FormWindow*>(widget)) {
    formWindow->standIn(newParent);
  } else {
    widget->setParent(newParent, newParent ? Qt::Widget : Qt::Window);
  }
  return old;
}

void QtToolkit::showWindow(WindowHandle window, std::int32_t /*mode*/) {
  QWidget* widget = windows_.widgetOf(window);
  if (auto* formWindow = dynamic_cast<FormWindow*>(widget)) {
    formWindow->appear();
  } else if (widget) {
    widget->show();
  }
}

WindowHandle QtToolkit::windowOf(const Control& control) {
  const Form* form = control.form();
  const FormWindow* window = form ? standingWindow(*form) : nullptr;
  return window ? windows_.handleOf(window->binder().widgetOf(control)) : 0;
}

std::vector<WindowHandle> QtToolkit::childWindows(WindowHandle window) { return windows_.childrenOf(window); }

std::string QtToolkit::windowTitle(WindowHandle window, std::size_t limit) {
  const QWidget* widget = windows_.widgetOf(window);
  return widget ? fromQt(widget->windowTitle().left(static_cast<QtSize>(limit))) : std::string();
}

bool QtToolkit::isWindowEnabled(WindowHandle window) {
  const QWidget* widget = windows_.widgetOf(window);
  return widget && widget->isEnabledTo(widget->parentWidget());
}

void QtToolkit::enableWindow(WindowHandle window, bool enabled) {
  if (QWidget* widget = windows_.widgetOf(window)) widget->setEnabled(enabled);
}

std::int32_t QtToolkit::twipsPerPixelX() const { return twipsPerPixel; }

std::int32_t QtToolkit::twipsPerPixelY() const { return twipsPerPixel; }

QWidget* QtToolkit::viewOf(const Form& form) const { return formWindow(form); }

std::vector<std::string> QtToolkit::missingWidgets(const Form& form) const {
  const QWidget* view = viewOf(form);
  return view ? widgets::missingWidgets(form, *view) : std::vector<std::string>{form.formName()};
}

/// A closed window may still count as active, such as the drop-down list of a page that a host has removed
/// since. Anything placed over it would be destroyed with the page.
QWidget* QtToolkit::activeWindow() {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  QWidget* window = QApplication::activeWindow();
  return window && window->isVisible() ? window : nullptr;
}

void QtToolkit::runAct(QWidget* window, const std::function<void()>& act) {
  const FormWindow* const formWindow = formWindowAround(window);
  if (formWindow && formWindow->form()) return formWindow->form()->dispatch(act);
  try {
    act();
  } catch (const std::exception& failure) {
    reportFailure(failure.what());
  }
}

FormWindow* QtToolkit::standingWindow(const Form& form) {
  const auto found = formWindows_.find(&form);
  if (found == formWindows_.end()) return nullptr;
  if (!found->second) createView(*found->first);
  return found->second.data();
}

FormWindow* QtToolkit::formWindow(const Form& form) const {
  const auto found = formWindows_.find(&form);
  return found == formWindows_.end() ? nullptr : found->second.data();
}

}  // namespace vlclientui::widgets
