#include "widgets/ViewRegistry.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QWidget>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "ui_ExportControl.h"
#include "ui_ExportDialogForm.h"
#include "ui_ImageServicesControl.h"
#include "ui_ImageServicesDialogForm.h"
#include "ui_ServiceProperties.h"
#include "ui_ServicePropertiesDialogForm.h"
#include "ui_SourceMetadata.h"
#include "ui_ViewPoint.h"
#include "ui_ViewPointDialogForm.h"
#include "widgets/ControlBinding.h"
#include "widgets/ReadableColors.h"
#include "widgets/SymbolIcons.h"

namespace vlclientui::widgets {

namespace {

/// A read-only box looks like the window around it.
void grayReadOnlyBoxes(QWidget& root) {
  for (QLineEdit* box : root.findChildren<QLineEdit*>()) {
    if (!box->isReadOnly()) continue;
    colorBy(*box,
            [](QPalette& palette) { palette.setColor(QPalette::Base, palette.color(QPalette::Window)); });
  }
}

void colorComplaints(QWidget& root) {
  for (QLabel* const label : root.findChildren<QLabel*>()) {
    if (label->objectName().endsWith(complaintSuffix)) colorAsComplaint(*label);
  }
}

void drawSymbols(QWidget& root) {
  for (QAbstractButton* const button : root.findChildren<QAbstractButton*>()) {
    const QVariant symbol = button->property(symbolProperty);
    if (symbol.isValid()) button->setIcon(symbolIcon(symbol.toString()));
  }
}

template <class Layout>
void buildLayout(QWidget& root) {
  Layout().setupUi(&root);
  grayReadOnlyBoxes(root);
  colorComplaints(root);
  drawSymbols(root);
}

/// The page, and a button below it.
void buildViewPointDialog(QWidget& root) {
  Ui::ViewPointDialogForm dialog;
  dialog.setupUi(&root);
  buildLayout<Ui::ViewPoint>(*dialog.steering);
  QWidget::setTabOrder(root.findChild<QWidget*>(QStringLiteral("uiTxtBoxY")), dialog.uibtnok);
}

}  // namespace

ViewRegistry ViewRegistry::shipped() {
  ViewRegistry registry;
  registry.add("ExportDialogForm", buildLayout<Ui::ExportDialogForm>);
  registry.add("ExportControl", buildLayout<Ui::ExportControl>);
  registry.add("ImageServicesDialogForm", buildLayout<Ui::ImageServicesDialogForm>);
  registry.add("ImageServicesControl", buildLayout<Ui::ImageServicesControl>);
  registry.add("SourceMetadata", buildLayout<Ui::SourceMetadata>);
  registry.add("ViewPoint", buildLayout<Ui::ViewPoint>);
  registry.add("ViewPointDialogForm", buildViewPointDialog);
  registry.add("ServiceProperties", buildLayout<Ui::ServiceProperties>);
  registry.add("ServicePropertiesDialogForm", buildLayout<Ui::ServicePropertiesDialogForm>);
  return registry;
}

void ViewRegistry::add(const std::string& name, Builder builder) {
  builders_.insert_or_assign(name, std::move(builder));
}

void ViewRegistry::build(const std::string& name, QWidget& root) const {
  const auto found = builders_.find(name);
  if (found == builders_.end()) throw RuntimeFailure("There is no layout for " + name);
  found->second(root);
}

}  // namespace vlclientui::widgets
