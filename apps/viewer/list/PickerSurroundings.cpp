#include "viewer/list/PickerSurroundings.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStyle>
#include <QToolButton>
#include <utility>

#include "viewer/list/LeftOutWindow.h"

namespace vlclientui::viewer {
namespace {

constexpr const char* placeOfList = "listPlace";
constexpr const char* placeForList = "myPlexa";
constexpr const char* controlAbove = "uiBtnBrowseServer";

QToolButton* button(const char* name) {
  auto* const made = new QToolButton;
  made->setObjectName(QLatin1String(name));
  made->setAutoRaise(true);
  made->setFocusPolicy(Qt::TabFocus);
  return made;
}

// Each row keeps its share of the height.
void insertBelowFirst(QBoxLayout& rows, QWidget& line) {
  std::vector<int> shares;
  for (int row = 0; row < rows.count(); ++row) shares.push_back(rows.stretch(row));
  rows.insertWidget(1, &line);
  rows.setStretch(1, 0);
  for (int row = 1; row < static_cast<int>(shares.size()); ++row)
    rows.setStretch(row + 1, shares[static_cast<std::size_t>(row)]);
}

QString shownPlace(const QString& place) {
  return place == "/" ? PickerSurroundings::tr("All folders")
                      : PickerSurroundings::tr("In %1").arg(place.mid(1).replace("/", " / "));
}

}  // namespace

PickerSurroundings::PickerSurroundings() { qApp->installEventFilter(this); }

PickerSurroundings::~PickerSurroundings() = default;

// A list is made anew for each answer, and gets its place before it has a parent.
bool PickerSurroundings::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Show && event->type() != QEvent::DynamicPropertyChange) return false;
  auto* const widget = qobject_cast<QWidget*>(watched);
  if (widget == nullptr) return false;
  // Not before the window is whole: what is made of it later would take the line for its list.
  const bool isPlaceShown = event->type() == QEvent::Show && widget->objectName() == placeForList;
  if (!line_ && isPlaceShown) stand(*widget->parentWidget());
  if (line_ && widget->property(placeOfList).isValid() && widget->window() == line_->window())
    follow(*widget);
  return false;
}

void PickerSurroundings::stand(QWidget& control) {
  auto* const rows = qobject_cast<QBoxLayout*>(control.layout());
  if (rows == nullptr) return;
  line_ = new QWidget(&control);
  auto* const line = new QHBoxLayout(line_);
  line->setContentsMargins(0, 0, 0, 0);
  back_ = button("PickerBack");
  back_->setIcon(back_->style()->standardIcon(QStyle::SP_FileDialogToParent));
  back_->setAccessibleName(tr("Back"));
  back_->setToolTip(tr("Back to the folder above (Backspace in the list)"));
  connect(back_, &QToolButton::clicked, this, &PickerSurroundings::goBack);
  place_ = new QLabel;
  place_->setObjectName("PickerPlace");
  place_->setTextFormat(Qt::PlainText);
  place_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  more_ = button("PickerLeftOut");
  more_->setToolTip(tr("What the list leaves out, and why"));
  connect(more_, &QToolButton::clicked, this, &PickerSurroundings::showLeftOut);
  line->addWidget(back_);
  line->addWidget(place_, 1);
  line->addWidget(more_);
  insertBelowFirst(*rows, *line_);
  for (auto* const child : control.findChildren<QWidget*>())
    if (child->property(placeOfList).isValid()) follow(*child);
  tellLeftOut();
}

void PickerSurroundings::follow(QWidget& list) {
  list_ = &list;
  const QString place = list.property(placeOfList).toString();
  place_->setText(shownPlace(place));
  place_->setToolTip(place);
  const bool hadFocus = back_->hasFocus();
  back_->setEnabled(place != "/");
  QWidget* const above = list.window()->findChild<QWidget*>(QLatin1String(controlAbove));
  if (above != nullptr) QWidget::setTabOrder(above, back_);
  QWidget::setTabOrder(back_, more_);
  QWidget::setTabOrder(more_, &list);
  if (hadFocus && !back_->isEnabled()) list.setFocus();
}

// As the key of the window does.
void PickerSurroundings::goBack() {
  if (!list_) return;
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
  QCoreApplication::sendEvent(list_, &press);
}

void PickerSurroundings::setLeftOut(std::vector<client::LeftOut> leftOut) {
  leftOut_ = std::move(leftOut);
  if (line_) tellLeftOut();
}

void PickerSurroundings::tellLeftOut() {
  const auto count = leftOut_.size();
  more_->setText(count == 1 ? tr("1 left out\u2026") : tr("%1 left out\u2026").arg(count));
  more_->setVisible(count > 0);
}

void PickerSurroundings::showLeftOut() { LeftOutWindow(leftOut_, line_->window()).exec(); }

}  // namespace vlclientui::viewer
