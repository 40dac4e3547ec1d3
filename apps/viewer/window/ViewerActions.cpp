#include "viewer/window/ViewerActions.h"

#include <QMenuBar>
#include <QStyle>

#include "viewer/colors/ColorsDesk.h"
#include "viewer/list/ServiceList.h"
#include "viewer/map/MapView.h"
#include "viewer/tools/MapTools.h"
#include "viewer/window/Appearance.h"
#include "viewer/window/FittingToolBar.h"
#include "viewer/window/SystemMenu.h"
#include "viewer/window/ToolIcons.h"
#include "viewer/window/ViewerWindow.h"

namespace vlclientui::viewer {
namespace {

QString tr(const char* text) { return ViewerWindow::tr(text); }

class Builder {
 public:
  Builder(ViewerWindow& window, const ActedOn& parts)
      : window_(window),
        parts_(parts),
        map_(parts.map),
        list_(parts.list),
        panes_(parts.paneToggles),
        handedOver_(parts.handedOverToggle) {
    makeServiceActions();
    makeMapActions();
    makeRectangleActions();
    describePanes();
    makeMenus();
    makeContextMenu();
    makeToolBar();
  }

  [[nodiscard]] ViewerActions actions() const {
    return {remove_, zoomToService_, export_, clearRectangle_, properties_, viewPoint_};
  }

 private:
  QAction* make(const QString& name, const QString& text, const QKeySequence& key, const QIcon& icon = {}) {
    auto* const action = new QAction(icon, text, &window_);
    action->setObjectName(name);
    action->setShortcut(key);
    return action;
  }
  template <class Receiver>
  QAction* make(const QString& name, const QString& text, const QKeySequence& key, Receiver& receiver,
                void (Receiver::*slot)(), const QIcon& icon = {}) {
    QAction* const action = make(name, text, key, icon);
    QObject::connect(action, &QAction::triggered, &receiver, slot);
    return action;
  }
  [[nodiscard]] QIcon standard(QStyle::StandardPixmap picture) const {
    return window_.style()->standardIcon(picture);
  }

  void makeServiceActions() {
    add_ = make("AddServices", tr("&Add services\u2026"), Qt::CTRL | Qt::Key_N, window_,
                &ViewerWindow::addServices, standard(QStyle::SP_FileDialogNewFolder));
    remove_ = make("RemoveService", tr("&Remove service"), QKeySequence::Delete, window_,
                   &ViewerWindow::removeService, standard(QStyle::SP_TrashIcon));
    // In the fields of the panes the key has its own meaning.
    remove_->setShortcutContext(Qt::WidgetShortcut);
    export_ = make("ExportService", tr("&Export\u2026"), Qt::CTRL | Qt::Key_E, window_,
                   &ViewerWindow::exportPickedService, standard(QStyle::SP_DialogSaveButton));
    export_->setToolTip(tr("Export an area of the picked service to a file"));
    properties_ = make("ServiceProperties", tr("Service &properties\u2026"), Qt::CTRL | Qt::Key_P, window_,
                       &ViewerWindow::showServiceProperties);
    connections_ = make("Connections", tr("&Connections\u2026"), {}, window_, &ViewerWindow::showConnections);
    connections_->setToolTip(tr("Servers by names of your own, with their passwords and tokens"));
    viewPoint_ = make("ViewPointDialog", tr("&Viewpoint\u2026"), Qt::CTRL | Qt::Key_T, window_,
                      &ViewerWindow::showViewPointDialog);
  }

  void makeMapActions() {
    zoomToService_ = make("ZoomToService", tr("Zoom to &service"), Qt::CTRL | Qt::Key_1, window_,
                          &ViewerWindow::zoomToService, standard(QStyle::SP_FileDialogContentsView));
    world_ =
        make("WholeWorld", tr("Whole &world"), Qt::CTRL | Qt::Key_0, map_, &MapView::showWorld, worldIcon());
  }

  void makeRectangleActions() {
    drawRectangle_ = make("DrawRectangle", tr("&Draw rectangle"), Qt::CTRL | Qt::Key_R, rectangleIcon());
    drawRectangle_->setToolTip(tr("Drag a rectangle on the map, to be exported"));
    drawRectangle_->setCheckable(true);
    QObject::connect(drawRectangle_, &QAction::toggled, &map_, &MapView::setDrawing);
    QObject::connect(&map_, &MapView::drawingEnded, drawRectangle_,
                     [action = drawRectangle_] { action->setChecked(false); });
    clearRectangle_ = make("ClearRectangle", tr("&Clear rectangle"), Qt::CTRL | Qt::SHIFT | Qt::Key_R, map_,
                           &MapView::clearRectangle);
  }

  void describePanes() {
    const Qt::Key keys[] = {Qt::Key_P, Qt::Key_T, Qt::Key_M};
    const QIcon icons[] = {propertiesIcon(), viewPointIcon(), metadataIcon()};
    for (qsizetype i = 0; i < panes_.size(); ++i) {
      panes_[i]->setShortcut(Qt::CTRL | Qt::SHIFT | keys[i]);
      panes_[i]->setIcon(icons[i]);
      panes_[i]->setToolTip(tr("Show or hide the page in a pane of this window"));
    }
  }

  void makeMenus() {
    QMenu* const file = window_.menuBar()->addMenu(tr("&File"));
    file->addAction(
        make("OpenService", tr("&Open\u2026"), QKeySequence::Open, window_, &ViewerWindow::openService));
    file->addMenu(&parts_.recentProjects);
    file->addActions(parts_.projectActions);
    file->addSeparator();
    file->addAction(export_);
    file->addSeparator();
    QAction* const quit = file->addAction(tr("&Quit"), &window_, &QWidget::close);
    quit->setObjectName("Quit");
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    QMenu* const services = window_.menuBar()->addMenu(tr("&Services"));
    services->addAction(add_);
    services->addMenu(&parts_.recentServers);
    services->addAction(connections_);
    services->addSeparator();
    services->addActions({properties_, &parts_.colors.change(), viewPoint_});
    services->addSeparator();
    services->addActions(list_.changing());
    services->addSeparator();
    services->addAction(remove_);
    makeViewMenu();
    QMenu* const help = window_.menuBar()->addMenu(tr("&Help"));
    addHelp(*help, "ViewerHelp", tr("&Using the viewer"), "Using_the_viewer")
        ->setShortcut(QKeySequence::HelpContents);
    addHelp(*help, "AddingServicesHelp", tr("Adding &services"), "Adding_an_Image_Service");
    addHelp(*help, "ConnectionsHelp", tr("Co&nnections"), "Connections");
    addHelp(*help, "PropertiesHelp", tr("Changing service &properties"), "Changing_service_properties");
    addHelp(*help, "ViewPointHelp", tr("The &viewpoint"), "Using_the_viewpoint_functionality");
    addHelp(*help, "MetadataHelp", tr("Viewing &metadata"), "Viewing_image_service_metadata");
    addHelp(*help, "ExportHelp", tr("&Exporting"), "Exporting_Image_Services");
    help->addSeparator();
    help->addAction(make("About", tr("&About the viewer"), {}, window_, &ViewerWindow::showAbout));
  }

  QAction* addHelp(QMenu& menu, const QString& name, const QString& text, const char* page) {
    QAction* const action = make(name, text, {});
    QObject::connect(action, &QAction::triggered, &window_,
                     [window = &window_, page] { window->showHelp(page); });
    menu.addAction(action);
    return action;
  }

  void makeViewMenu() {
    QMenu* const view = window_.menuBar()->addMenu(tr("&View"));
    view->addActions(parts_.tools.zooms());
    view->addSeparator();
    view->addActions({zoomToService_, &parts_.tools.nativePixels(), world_});
    view->addSeparator();
    view->addActions(parts_.tools.views());
    view->addAction(make("ReloadMap", tr("Dra&w anew"), Qt::Key_F5, window_, &ViewerWindow::reload));
    view->addSeparator();
    view->addActions({drawRectangle_, clearRectangle_});
    view->addSeparator();
    view->addAction(&parts_.smallCopies);
    view->addSeparator();
    addSystemMenu(*view, map_, window_.services());
    view->addSeparator();
    view->addActions(panes_);
    view->addActions({&parts_.valuesToggle, &parts_.colors.legend(), &handedOver_});
    view->addSeparator();
    addAppearanceMenu(*view, parts_.settings);
  }

  // Below what the list brings along.
  void makeContextMenu() {
    auto* const line = new QAction(&window_);
    line->setSeparator(true);
    list_.addActions({line, zoomToService_, &parts_.tools.nativePixels(), properties_,
                      &parts_.colors.change(), export_, remove_});
    parts_.tools.addToMenu({zoomToService_});
  }

  void makeToolBar() {
    auto* const bar = new FittingToolBar(tr("Services"));
    window_.addToolBar(bar);
    bar->setObjectName("ServiceBar");
    bar->setMovable(false);
    bar->addActions({add_, remove_, export_});
    bar->addSeparator();
    bar->addActions({zoomToService_, world_});
    bar->addActions(parts_.tools.onToolBar());
    bar->addActions({drawRectangle_, &parts_.valuesToggle, &parts_.colors.change()});
    bar->addSeparator();
    bar->addActions(panes_);
  }

  ViewerWindow& window_;
  const ActedOn& parts_;
  MapView& map_;
  ServiceList& list_;
  QList<QAction*> panes_;
  QAction& handedOver_;
  QAction* add_ = nullptr;
  QAction* remove_ = nullptr;
  QAction* export_ = nullptr;
  QAction* properties_ = nullptr;
  QAction* viewPoint_ = nullptr;
  QAction* connections_ = nullptr;
  QAction* zoomToService_ = nullptr;
  QAction* world_ = nullptr;
  QAction* drawRectangle_ = nullptr;
  QAction* clearRectangle_ = nullptr;
};

}  // namespace

ViewerActions buildActions(ViewerWindow& window, const ActedOn& parts) {
  return Builder(window, parts).actions();
}

}  // namespace vlclientui::viewer
