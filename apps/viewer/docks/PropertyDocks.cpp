#include "viewer/docks/PropertyDocks.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/ParsedDocument.h"
#include "host/DesktopWindows.h"
#include "host/HandedOver.h"
#include "host/ShownText.h"
#include "library/ClassFactory.h"
#include "properties/PropertiesDocument.h"
#include "viewer/docks/TabWay.h"
#include "widgets/Mnemonics.h"
#include "widgets/ScrollPlace.h"

namespace vlclientui::viewer {
namespace {

constexpr auto propertiesPage = PropertyPageId::PropertyPageProperties;
constexpr auto viewPointPage = PropertyPageId::PropertyPageViewPoint;
constexpr auto metadata = PropertyPageId::PropertyPageMetadata;

/// The place of a page. Its size hint does not depend on the page, so that dock and map keep their widths
/// while a person leafs through it.
class PagePlace : public QWidget {
 public:
  [[nodiscard]] QSize sizeHint() const override { return QSize(560, 480).expandedTo(minimumSizeHint()); }
};

/// Pages pass lock and viewpoint to each other through the thread's state. Cleared here, they do not reach
/// the next service.
void forgetHandedOver() {
  const host::HandedOver state = host::handedOver();
  for (std::string* const text : {&state.lockImageId, &state.viewPointX, &state.viewPointY}) text->clear();
}

// Boxes have the user's decimal separator, documents a point.
double numberIn(const std::string& text, bool* isNumber = nullptr) {
  return QString::fromStdString(text).replace(',', '.').toDouble(isNumber);
}

bool isNumber(const std::string& text) {
  bool is = false;
  return std::isfinite(numberIn(text, &is)) && is;
}

bool isSameNumber(const std::string& inBox, const std::string& inDocument) {
  return numberIn(inBox) == numberIn(inDocument);
}

QLabel* makeHint() {
  auto* const hint = new QLabel(PropertyDocks::tr("Pick a service in the list: its page stands here then."));
  hint->setWordWrap(true);
  hint->setAlignment(Qt::AlignCenter);
  hint->setMargin(24);
  return hint;
}

QWidget* scrolling(QWidget& place) {
  auto* const scroller = new widgets::ScrollPlace;
  scroller->setWidget(&place);
  return scroller;
}

QWidget* pageIn(const QWidget& place) {
  const auto children = place.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
  return children.isEmpty() ? nullptr : children.last();
}

/// A window above a floating dock may still count a widget of the page as the one with its focus.
void leaveFocus(const QWidget& page) {
  for (const QWidget* above = page.parentWidget(); above; above = above->parentWidget()) {
    QWidget* const holder = above->isWindow() ? above->focusWidget() : nullptr;
    if (holder && page.isAncestorOf(holder)) holder->clearFocus();
  }
}

}  // namespace

std::shared_ptr<IOVLServicePropertiesDialog> openPropertiesDialog(
    const std::shared_ptr<PickedService>& service, const ObjectPtr& callback) {
  const ObjectPtr object = createObject("ServicePropertiesDialog");
  auto dialog = queryInterface<IOVLServicePropertiesDialog>(object);
  queryInterface<IOVLServicePropertiesDialog2>(object)->SetCallback(callback);
  if (dialog->Init("", nullptr, service) == boolean16False) throw RuntimeFailure(dialog->Status());
  return dialog;
}

/// Receives locks as long as the docks live.
class PropertyDocks::Listener : public IServicePropertiesCallback {
 public:
  explicit Listener(PropertyDocks& docks) : docks_(&docks) {}
  void OnServicePropertiesChanged(const std::string& servicePropertiesXml) override {
    if (docks_) docks_->lockTo(servicePropertiesXml);
  }

 private:
  QPointer<PropertyDocks> docks_;
};

PropertyDocks::PropertyDocks(host::ComposedHost host, QMainWindow& window, Follow follow, Steps steps)
    : host_(std::move(host)), follow_(std::move(follow)) {
  if (steps == Steps::AtOnce) steps_ = std::make_unique<ViewPointSteps>([this] { step(); });
  docks_ = {makeDock(window, propertiesPage, tr("Properties"), "PropertiesDock"),
            makeDock(window, viewPointPage, tr("Viewpoint"), "ViewPointDock"),
            makeDock(window, metadata, tr("Metadata"), "MetadataDock")};
  // The viewpoint's dock is visible beside either of the others.
  window.tabifyDockWidget(docks_[0].dock, docks_[2].dock);
  for (Dock& each : docks_) {
    connect(each.dock, &QDockWidget::visibilityChanged, this, [this, &each] { showOrClose(each); });
    connect(each.dock->toggleViewAction(), &QAction::triggered, each.dock, [dock = each.dock](bool on) {
      if (on) dock->raise();
    });
  }
  enableButtons();
}

PropertyDocks::~PropertyDocks() {
  for (const Dock& each : docks_) disconnect(each.dock, nullptr, this, nullptr);
  closeAll();
}

PropertyDocks::Dock PropertyDocks::makeDock(QMainWindow& window, PropertyPageId page, const QString& title,
                                            const QString& name) {
  auto* const dock = new QDockWidget(title, &window);
  dock->setObjectName(name);
  auto* const content = new QWidget;
  auto* const layout = new QVBoxLayout(content);
  layout->setContentsMargins(4, 4, 4, 4);
  auto* const place = page == metadata ? new PagePlace : new QWidget;
  place->setObjectName(name + "Place");
  (new QVBoxLayout(place))->setContentsMargins(0, 0, 0, 0);
  auto* const stack = new QStackedWidget;
  stack->addWidget(makeHint());
  // The steering of the viewpoint is low, and worth seeing whole.
  stack->addWidget(page == viewPointPage ? place : scrolling(*place));
  layout->addWidget(stack, 1);
  QWidget* const row = page == metadata ? nullptr : buttonRow(page);
  if (row != nullptr) layout->addWidget(row);
  dock->setWidget(content);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  dock->hide();
  // A floating pane is a window of its own.
  host::openHelpByKey(*dock, page == metadata        ? "Viewing_image_service_metadata"
                             : page == viewPointPage ? "Using_the_viewpoint_functionality"
                                                     : "Changing_service_properties");
  return {page, dock, stack, place, row};
}

QWidget* PropertyDocks::buttonRow(PropertyPageId page) {
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  // In line with the page's own button above it.
  const int side = row->style()->pixelMetric(QStyle::PM_LayoutRightMargin, nullptr, row);
  layout->setContentsMargins(side, 0, side, 0);
  layout->addStretch(1);
  const auto add = [&](const QString& text, const QString& name, const QString& hint,
                       void (PropertyDocks::*slot)()) {
    auto* const button = new QPushButton(text);
    button->setObjectName(name);
    button->setToolTip(hint);
    button->setProperty(widgets::keepsLetterProperty, true);
    connect(button, &QPushButton::clicked, this, slot);
    layout->addWidget(button);
    buttons_ += button;
  };
  // The buttons of all panes do the same, but a person reaches those of each one by letters of their own.
  const bool isFirst = page == propertiesPage;
  add(isFirst ? tr("A&pply") : tr("App&ly"), "ApplyProperties",
      tr("Draw the service with what the pages hold"), &PropertyDocks::apply);
  add(isFirst ? tr("R&evert") : tr("Rever&t"), "RevertProperties", tr("Show what the service has"),
      &PropertyDocks::revert);
  return row;
}

QList<QAction*> PropertyDocks::toggles() const {
  QList<QAction*> actions;
  for (const Dock& each : docks_) actions += each.dock->toggleViewAction();
  return actions;
}

void PropertyDocks::showPagesOf(const std::shared_ptr<PickedService>& service) {
  closeAll();
  service_ = service;
  if (service_) {
    try {
      const auto listener = std::make_shared<Listener>(*this);
      dialog_ = openPropertiesDialog(service_, listener);
      metadata_ = openPropertiesDialog(service_, listener);
    } catch (const RuntimeFailure& failure) {
      emit complained(QString::fromStdString(host::shownText(host_, failure.description())));
    }
  }
  for (Dock& each : docks_) showOrClose(each);
  enableButtons();
}

void PropertyDocks::closeAll() {
  for (Dock& each : docks_) closePage(each);
  dialog_.reset();
  metadata_.reset();
  service_.reset();
  forgetHandedOver();
}

// A dock behind another one of a tab bar keeps its page; only a closed one loses it.
void PropertyDocks::showOrClose(Dock& dock) {
  const bool isOpen = !dock.dock->isHidden();
  if (isOpen && !dock.isShown) showPage(dock);
  if (!isOpen && dock.isShown) closePage(dock);
  if (!dock.isShown) dock.stack->setCurrentIndex(0);
}

const std::shared_ptr<IOVLServicePropertiesDialog>& PropertyDocks::dialogOf(const Dock& dock) const {
  return dock.page == metadata ? metadata_ : dialog_;
}

void PropertyDocks::showPage(Dock& dock) {
  const auto dialog = dialogOf(dock);
  if (!dialog) return;
  dock.stack->setCurrentIndex(1);
  const WindowHandle handle = host::windowHandleOf(host_, *dock.place);
  const bool isShown = dialog->ShowPropertyPage(dock.page, handle) != boolean16False;
  // Pending events ran meanwhile, and may have brought another service.
  if (dialog != dialogOf(dock)) {
    dialog->Close(dock.page);
    return showOrClose(dock);
  }
  if (!isShown) return emit complained(QString::fromStdString(host::shownText(host_, dialog->Status())));
  dock.isShown = true;
  if (QWidget* const page = pageIn(*dock.place)) dock.place->layout()->addWidget(page);
  leadTab();
}

// As they stand: two behind each other with their tabs below, and the third one under these.
void PropertyDocks::leadTab() const {
  std::vector<QWidget*> parts;
  for (const PropertyPageId page : {propertiesPage, metadata, viewPointPage}) {
    const auto dock = std::ranges::find(docks_, page, &Dock::page);
    const auto bars =
        dock->dock->parentWidget()->findChildren<QTabBar*>(QString(), Qt::FindDirectChildrenOnly);
    if (page == viewPointPage) parts.insert(parts.end(), bars.begin(), bars.end());
    parts.push_back(dock->place);
    if (dock->row != nullptr) parts.push_back(dock->row);
  }
  leadTabThrough(parts);
}

void PropertyDocks::closePage(Dock& dock) {
  if (!dock.isShown) return;
  dock.isShown = false;
  if (QWidget* const page = pageIn(*dock.place)) leaveFocus(*page);
  dialogOf(dock)->Close(dock.page);
}

// A page that was never shown holds nothing, which is no edit.
bool PropertyDocks::hasEdits() const {
  const auto properties = std::ranges::find(docks_, propertiesPage, &Dock::page);
  const auto dialog = dialog_;
  return properties->isShown && dialog->HasChanged() != boolean16False;
}

bool PropertyDocks::waits() const { return dialog_ && (hasEdits() || isMoved()); }

// A viewpoint that was applied stays handed over.
bool PropertyDocks::isMoved() const {
  const host::HandedOver moved = host::handedOver();
  if (!service_ || moved.viewPointX.empty()) return false;
  const auto present = parsedDocument(*host_.platform->xml, service_->ServiceProperties());
  return !isSameNumber(moved.viewPointX, textAt(*present, "//ViewPointX")) ||
         !isSameNumber(moved.viewPointY, textAt(*present, "//ViewPointY"));
}

void PropertyDocks::followImage() {
  try {
    if (metadata_) refreshMetadata();
  } catch (const RuntimeFailure& failure) {
    emit complained(QString::fromStdString(host::shownText(host_, failure.description())));
  }
  const auto dialog = dialog_;
  if (dialog && !hasEdits() && dialog == dialog_) dialog->Refresh();
}

// The page shows this until its next node is clicked.
void PropertyDocks::refreshMetadata() {
  if (!std::ranges::find(docks_, metadata, &Dock::page)->isShown) return;
  const auto dialog = metadata_;
  const auto service = service_;
  // The page of the viewpoint that each dialog object has empties what the docks wait with.
  const host::HandedOver state = host::handedOver();
  const auto kept = std::pair(state.viewPointX, state.viewPointY);
  dialog->serviceInfoXml(service->ServiceInfo());
  dialog->ImageMetaDataXml(service->GetImageMetadata(""));
  if (dialog != metadata_) return;
  std::tie(state.viewPointX, state.viewPointY) = kept;
  dialog->Refresh();
}

void PropertyDocks::apply() {
  // Now, because a person may type on while the service is drawn.
  const auto dialog = dialog_;
  if (dialog && follow_(dialog->GetUpdatedProperties()) && dialog == dialog_) dialog->Refresh();
}

// The page forgets its place when the keys come back to it, and shows it all the same.
void PropertyDocks::rememberPlace() const {
  const auto viewPoint = std::ranges::find(docks_, viewPointPage, &Dock::page);
  const host::HandedOver moved = host::handedOver();
  if (!viewPoint->isShown || !moved.viewPointX.empty()) return;
  const auto shown = [&](const char* name) {
    const auto* const box = viewPoint->place->findChild<QLineEdit*>(QLatin1String(name));
    return box == nullptr ? std::string() : box->text().replace(',', '.').toStdString();
  };
  std::tie(moved.viewPointX, moved.viewPointY) = std::pair(shown("uiTxtBoxX"), shown("uiTxtBoxY"));
}

// Edits of the properties wait on for Apply. What is half typed is no place yet.
void PropertyDocks::step() {
  rememberPlace();
  const auto dialog = dialog_;
  const host::HandedOver moved = host::handedOver();
  if (!dialog || !isNumber(moved.viewPointX) || !isNumber(moved.viewPointY) || !isMoved()) return;
  const bool keepsEdits = hasEdits();
  if (dialog != dialog_) return;
  const std::string properties =
      withViewPoint(service_->ServiceProperties(), moved.viewPointX, moved.viewPointY);
  if (follow_(properties) && !keepsEdits && dialog == dialog_) dialog->Refresh();
}

// The viewpoint page shows only a person's choice, so it starts over.
void PropertyDocks::revert() {
  if (!dialog_) return;
  const auto viewPoint = std::ranges::find(docks_, viewPointPage, &Dock::page);
  closePage(*viewPoint);
  forgetHandedOver();
  showOrClose(*viewPoint);
  // Showing a page lets pending events run.
  if (dialog_) dialog_->Refresh();
}

// Edits are kept: a later Apply writes the lock over them. The page that locks is still at work.
void PropertyDocks::lockTo(const std::string& properties) {
  const auto service = service_;
  const bool keepsEdits = hasEdits();
  if (service != service_ || !follow_(properties) || keepsEdits) return;
  host::handedOver().lockImageId.clear();
  const auto refreshPages = [this] {
    if (dialog_) dialog_->Refresh();
  };
  QMetaObject::invokeMethod(this, refreshPages, Qt::QueuedConnection);
}

void PropertyDocks::enableButtons() {
  for (QPushButton* const button : buttons_) button->setEnabled(dialog_ != nullptr);
}

}  // namespace vlclientui::viewer
