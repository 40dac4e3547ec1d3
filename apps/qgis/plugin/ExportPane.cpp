#include "qgis/plugin/ExportPane.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>
#include <utility>

#include <qgsproject.h>

#include "contracts/RuntimeFailure.h"
#include "host/DesktopWindows.h"
#include "host/ShownText.h"
#include "viewer/export/ExportWindowSetup.h"
#include "widgets/Mnemonics.h"
#include "widgets/ScrollPlace.h"

namespace vlclientui::qgis {

ExportPane::ExportPane(host::ComposedHost host, Places places, QWidget* parent)
    : QDockWidget(tr("Service export"), parent),
      host_(std::move(host)),
      places_(std::move(places)),
      stack_(new QStackedWidget),
      hint_(new QLabel),
      place_(new QWidget),
      anew_(makeAnew()) {
  setObjectName(QStringLiteral("VLClientUIExportDock"));
  place_->setObjectName(QStringLiteral("ExportDockPlace"));
  (new QVBoxLayout(place_))->setContentsMargins(0, 0, 0, 0);
  hint_->setObjectName(QStringLiteral("ExportDockHint"));
  hint_->setWordWrap(true);
  hint_->setAlignment(Qt::AlignCenter);
  hint_->setMargin(24);
  auto* const scroller = new widgets::ScrollPlace;
  scroller->setWidget(place_);
  stack_->addWidget(hint_);
  stack_->addWidget(scroller);
  auto* const row = new QHBoxLayout;
  // In line with the page, which has margins of its own.
  const int margin = style()->pixelMetric(QStyle::PM_LayoutRightMargin, nullptr, place_);
  row->setContentsMargins(margin, 0, margin, margin);
  row->addStretch(1);
  row->addWidget(anew_);
  auto* const content = new QWidget;
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->addWidget(stack_, 1);
  layout->addLayout(row);
  setWidget(content);
  host::openHelpByKey(*this, "Exporting_Image_Services");
  connect(this, &QDockWidget::visibilityChanged, this, [this] {
    if (isHidden()) return leavePage();
    if (!dialog_ && !errand_) fill();
  });
  tell(tr("Pick a layer of an image service: its export stands here then."));
}

// It goes with the page that it has made anew.
QPushButton* ExportPane::makeAnew() {
  auto* const button = new QPushButton(tr("Take the map's e&xtent"));
  button->setObjectName(QStringLiteral("ExportDockAnew"));
  button->setToolTip(tr("Propose what the map shows now, or the rectangle that was drawn"));
  button->setProperty(widgets::keepsLetterProperty, true);
  connect(button, &QPushButton::clicked, this, &ExportPane::fill, Qt::QueuedConnection);
  return button;
}

// Beside the buttons of the page: a row of its own would cost the page its last one.
void ExportPane::addAnew(const QWidget& page) {
  auto* const row = page.findChild<QHBoxLayout*>(QStringLiteral("buttonRow"));
  if (row == nullptr) return;
  row->insertWidget(0, makeAnew());
  anew_->hide();
}

ExportPane::~ExportPane() {
  disconnect(this, nullptr, this, nullptr);
  leavePage();
}

void ExportPane::showFor(const std::optional<Subject>& subject) {
  if (subject == subject_) return;
  subject_ = subject;
  fill();
}

void ExportPane::follow(const std::string& properties) {
  if (!subject_ || subject_->source.properties == properties) return;
  subject_->source.properties = properties;
  dialog_ ? followNow() : fill();
}

// An export that is being written keeps the service until its end.
void ExportPane::followNow() {
  if (following_) return;
  const std::string properties = subject_->source.properties;
  const auto follow = [service = prepared_->service, properties] {
    service->follow(properties);
    return std::string();
  };
  following_ = std::make_unique<viewer::Errand>(follow);
  connect(following_.get(), &viewer::Errand::done, this, [this, properties](viewer::Errand::End end) {
    following_.release()->deleteLater();
    if (end != viewer::Errand::End::Well) return fill();
    if (subject_->source.properties != properties) followNow();
  });
  following_->start();
}

// A pane that is closed keeps no service open; one behind others of a tab bar is not closed.
void ExportPane::fill() {
  leavePage();
  if (!subject_) return tell(tr("Pick a layer of an image service: its export stands here then."));
  if (isHidden()) return;
  tell(tr("Opening %1\u2026").arg(subject_->title));
  prepared_ = std::make_shared<viewer::PreparedExport>();
  const auto open = [into = prepared_, host = host_, subject = *subject_, places = places_()] {
    *into = viewer::prepareExport(host, subject.source.reference, subject.title, subject.source.properties,
                                  places);
    return std::string();
  };
  errand_ = std::make_unique<viewer::Errand>(open);
  connect(errand_.get(), &viewer::Errand::done, this, &ExportPane::takeService);
  errand_->start();
}

void ExportPane::leavePage() {
  errand_.reset();
  following_.reset();
  if (const auto dialog = std::exchange(dialog_, nullptr)) {
    dialog->window().closed.disconnectAll();
    dialog->closePage();
  }
  prepared_.reset();
}

void ExportPane::takeService(viewer::Errand::End end, const QString& problem) {
  errand_.release()->deleteLater();
  if (end != viewer::Errand::End::Well)
    return tell(QString::fromStdString(host::shownText(host_, problem.toStdString())));
  try {
    showPage();
  } catch (const std::exception& failure) {
    leavePage();
    tell(QString::fromStdString(host::shownText(host_, failure.what())));
  }
}

void ExportPane::showPage() {
  const auto dialog =
      std::dynamic_pointer_cast<ExportDialog>(viewer::exportDialogFor(host_, prepared_->service));
  dialog_ = dialog;
  stack_->setCurrentIndex(1);
  const bool stands = dialog->showPage(prepared_->extents, host::windowHandleOf(host_, *place_));
  // Pending events ran meanwhile, and may have brought another service.
  if (dialog != dialog_) return;
  if (!stands) throw RuntimeFailure(tr("The export cannot be shown.").toStdString());
  // The window is at work still when it tells that it goes.
  dialog->window().closed.connect(
      [this] { QMetaObject::invokeMethod(this, &ExportPane::takeEnd, Qt::QueuedConnection); });
  const auto children = place_->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  if (children.isEmpty()) return;
  place_->layout()->addWidget(children.last());
  addAnew(*children.last());
  viewer::proposeFile(*children.last(), QgsProject::instance()->absolutePath().toStdString());
}

// After Cancel it begins anew, with what the map shows by then.
void ExportPane::takeEnd() {
  if (!dialog_) return;
  const std::string request = dialog_->iExportImageDialog_GetUpdatedProperties();
  const auto service = prepared_->service;
  if (!request.empty()) emit exported(viewer::outcomeOfExport(host_, *service, request));
  fill();
}

void ExportPane::tell(const QString& text) {
  hint_->setText(text);
  stack_->setCurrentIndex(0);
  anew_->setEnabled(subject_.has_value());
  anew_->show();
}

}  // namespace vlclientui::qgis
