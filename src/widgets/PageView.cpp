#include "widgets/PageView.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr int labelWidth = 130;

QString shownValue(const engine::FormField& field, const PathTexts& paths) {
  const QString value = toQt(paths.shown(field.value));
  if (value.trimmed().isEmpty()) return QStringLiteral("\u2013");
  return field.unit.empty() ? value : value + QLatin1Char(' ') + toQt(field.unit);
}

QLabel* makeLabel(const engine::FormField& field) {
  auto* label = new QLabel(toQt(field.label) + QLatin1Char(':'));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  label->setMinimumWidth(labelWidth);
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

QLabel* makeValue(const QString& text) {
  auto* value = new QLabel(text);
  value->setTextFormat(Qt::PlainText);
  value->setWordWrap(true);
  value->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  value->setCursor(Qt::IBeamCursor);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  value->setSizePolicy(policy);
  return value;
}

}  // namespace

PageView::PageView(const engine::FormModel& page, PathTexts paths, QWidget* parent)
    : QScrollArea(parent), paths_(std::move(paths)) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setPage(page);
}

void PageView::setPage(const engine::FormModel& page) {
  const int place = verticalScrollBar()->value();
  auto* content = new QWidget;
  auto* layout = new QVBoxLayout(content);
  layout->setSpacing(12);
  for (const engine::FormGroup& group : page.groups) layout->addWidget(makeGroup(group));
  layout->addStretch();
  setWidget(content);
  verticalScrollBar()->setValue(place);
}

QWidget* PageView::makeGroup(const engine::FormGroup& group) const {
  auto* box = new QGroupBox(toQt(group.caption));
  box->setFlat(group.caption.empty());
  auto* layout = new QFormLayout(box);
  layout->setHorizontalSpacing(16);
  layout->setVerticalSpacing(7);
  layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  for (const engine::FormField& field : group.fields) {
    if (field.visible) addField(field, *box);
  }
  box->setVisible(std::ranges::any_of(group.fields, &engine::FormField::visible));
  return box;
}

void PageView::addField(const engine::FormField& field, QWidget& group) const {
  QLabel* label = makeLabel(field);
  QLabel* value = makeValue(shownValue(field, paths_));
  value->setObjectName(toQt(field.name));
  value->setAccessibleName(toQt(field.label));
  for (QWidget* widget : {label, value}) {
    widget->setToolTip(toQt(field.help));
    widget->setEnabled(field.enabled);
  }
  static_cast<QFormLayout*>(group.layout())->addRow(label, value);
}

}  // namespace vlclientui::widgets
