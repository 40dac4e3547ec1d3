#include "widgets/PageView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "widgets/Mnemonics.h"
#include "widgets/QtVersions.h"
#include "widgets/ReadableColors.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr int focusMargin = 40;  // room for a complaint below a field
constexpr int labelWidth = 130;
constexpr int groupSpacing = 12;

QLabel* makeLabel(const engine::FormField& field, const FieldView& view) {
  // Without a field to edit a label leads nowhere, so it shows its text unmarked.
  const QString text = field.readOnly ? toQt(field.label) : markedText(field.label, field.labelKey);
  auto* label = new QLabel(text + QLatin1Char(':'));
  label->setTextFormat(Qt::PlainText);
  label->setMinimumWidth(labelWidth);
  if (field.readOnly) {
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    colorFaintly(*label);
  } else {
    label->setBuddy(view.control());
  }
  return label;
}

/// Keeps an editor's label level with its text when a complaint makes the row higher.
void levelWith(QLabel& label, const QWidget& control) {
  const int above = std::max(0, (control.sizeHint().height() - label.sizeHint().height()) / 2);
  label.setContentsMargins(0, above, 0, 0);
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

bool isTall(const engine::FormField& field) { return field.kind == engine::FieldKind::MultiLine; }

QVBoxLayout* layoutOf(QWidget& content) {
  auto* layout = new QVBoxLayout(&content);
  layout->setSpacing(groupSpacing);
  return layout;
}

}  // namespace

PageView::PageView(const engine::FormModel& page, PageListener listener, QWidget* parent)
    : QScrollArea(parent), listener_(std::move(listener)) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setAccessibleName(tr("Fields"));
  page_ = page;
  build();
  // Also where a letter, not Tab, leads to a field. Under the mouse nothing moves.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
    // Whoever comes back to the window finds the page as it was.
    const bool isInside =
        before != nullptr && now != nullptr && widget() != nullptr && widget()->isAncestorOf(now);
    if (isInside && QApplication::mouseButtons() == Qt::NoButton) ensureWidgetVisible(now, 0, focusMargin);
  });
}

/// The fields go later and lose the focus then.
PageView::~PageView() { disconnect(qApp, nullptr, this, nullptr); }

PageView::Change PageView::setPage(const engine::FormModel& page) {
  const bool sameLayout = engine::haveSameLayout(page_, page);
  page_ = page;
  if (sameLayout) {
    update();
    return Change::Values;
  }
  const int place = verticalScrollBar()->value();
  const int tab = tabs_ ? tabs_->currentIndex() : -1;
  const std::string focused = focusedPath();
  build();
  if (tabs_) tabs_->setCurrentIndex(std::min(std::max(tab, 0), tabs_->count() - 1));
  focusField(focused);
  verticalScrollBar()->setValue(place);
  return Change::Layout;
}

// An event of the old page may still be running.
void PageView::build() {
  isBuilt_ = false;
  retireRows();
  if (QWidget* old = takeWidget()) {
    old->hide();
    old->deleteLater();
  }
  tabs_ = nullptr;
  auto* content = new QWidget;
  auto* layout = layoutOf(*content);
  setWidget(content);
  makeGroups(std::nullopt);
  if (!page_.tabs.empty()) makeTabs();
  layout->addStretch();
  alignLabels();
  update();
  takeFocusBy(firstEditor());
  if (isVisible()) settleMnemonics(*this);
  isBuilt_ = true;
}

/// With editors the focus moves a page; without, the page has keys of its own.
void PageView::takeFocusBy(QWidget* editor) {
  setFocusProxy(editor);
  setFocusPolicy(editor ? Qt::TabFocus : Qt::StrongFocus);
}

/// Makes them in tab order.
void PageView::makeGroups(std::optional<std::size_t> tab) {
  for (const engine::FormGroup& group : page_.groups) {
    if (group.tab == tab) makeGroup(group);
  }
}

void PageView::makeTabs() {
  tabs_ = new QTabWidget(widget());
  widget()->layout()->addWidget(tabs_);
  for (std::size_t tab = 0; tab < page_.tabs.size(); ++tab) {
    auto* page = new QWidget(tabs_);
    auto* layout = layoutOf(*page);
    tabs_->addTab(page, markedText(page_.tabs[tab].text, page_.tabs[tab].keyOffset));
    makeGroups(tab);
    layout->addStretch();
  }
}

void PageView::makeGroup(const engine::FormGroup& group) {
  QWidget* place = group.tab ? tabs_->widget(static_cast<int>(*group.tab)) : widget();
  auto* box = new QGroupBox(toQt(group.caption), place);
  box->setFlat(group.caption.empty());
  auto* layout = new QFormLayout(box);
  layout->setHorizontalSpacing(16);
  layout->setVerticalSpacing(7);
  layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  Group made{box, layout, static_cast<std::size_t>(&group - page_.groups.data()), {}};
  for (const engine::FormField& field : group.fields) made.rows.push_back(addField(field, *layout));
  place->layout()->addWidget(box);
  groups_.push_back(std::move(made));
}

PageView::Row PageView::addField(const engine::FormField& field, QFormLayout& layout) const {
  FieldView* view = makeFieldView(field, listener_, layout.parentWidget());
  if (view->labelsItself()) {
    layout.addRow(new QLabel(layout.parentWidget()), view->widget());
    return {nullptr, view};
  }
  QLabel* label = makeLabel(field, *view);
  if (!field.readOnly && !isTall(field)) levelWith(*label, *view->control());
  layout.addRow(label, view->widget());
  return {label, view};
}

/// Aligns all editors of a page to one left edge, across groups.
void PageView::alignLabels() {
  int width = labelWidth;
  for (const Group& group : groups_) {
    for (const Row& row : group.rows) {
      if (row.label) width = std::max(width, row.label->sizeHint().width());
    }
  }
  for (const Group& group : groups_) {
    for (const Row& row : group.rows) {
      group.layout->labelForField(row.view->widget())->setMinimumWidth(width);
    }
  }
}

void PageView::update() {
  for (Group& group : groups_) updateGroup(group, page_.groups[group.index]);
  updateTabs();
}

void PageView::updateGroup(Group& group, const engine::FormGroup& model) {
  for (std::size_t row = 0; row < group.rows.size(); ++row) {
    const engine::FormField& field = model.fields[row];
    auto& [label, view] = group.rows[row];
    view->update(field);
    showRow(*group.layout, *view->widget(), field.visible);
    for (QWidget* widget : {static_cast<QWidget*>(label), view->widget()}) {
      if (!widget) continue;
      widget->setToolTip(toQt(field.help));
      widget->setEnabled(field.enabled);
    }
  }
  group.box->setVisible(std::ranges::any_of(model.fields, &engine::FormField::visible));
}

/// A complaint on a hidden tab shows on the tab itself.
void PageView::updateTabs() {
  for (int tab = 0; tabs_ && tab < tabs_->count(); ++tab) {
    const bool complains = std::ranges::any_of(page_.groups, [tab](const engine::FormGroup& group) {
      return group.tab == static_cast<std::size_t>(tab) &&
             std::ranges::any_of(group.fields,
                                 [](const engine::FormField& field) { return !field.complaint.empty(); });
    });
    const bool marked = !tabs_->tabIcon(tab).isNull();
    if (complains != marked)
      tabs_->setTabIcon(tab, complains ? style()->standardIcon(QStyle::SP_MessageBoxWarning) : QIcon());
  }
}

void PageView::retireRows() {
  for (const Group& group : groups_) {
    for (const Row& row : group.rows) row.view->retire();
  }
  groups_.clear();
}

QWidget* PageView::firstEditor() const {
  for (const Group& group : groups_) {
    if (tabs_ && page_.groups[group.index].tab) return tabs_->tabBar();
    for (const Row& row : group.rows) {
      if (row.view->control()->focusPolicy() & Qt::TabFocus) return row.view->control();
    }
  }
  return nullptr;
}

std::string PageView::focusedPath() const {
  const QWidget* holder = window()->focusWidget();
  for (const Group& group : groups_) {
    for (const Row& row : group.rows) {
      if (row.view->control() == holder) return row.view->path();
    }
  }
  return {};
}

FieldView* PageView::viewAt(const std::string& path) const {
  for (const Group& group : groups_) {
    for (const Row& row : group.rows) {
      if (row.view->path() == path) return row.view;
    }
  }
  return nullptr;
}

void PageView::focusField(const std::string& path) {
  const FieldView* view = path.empty() ? nullptr : viewAt(path);
  if (view) view->control()->setFocus(Qt::OtherFocusReason);
}

/// The letters of the window around come before those of the page.
void PageView::showEvent(QShowEvent* event) {
  QScrollArea::showEvent(event);
  settleMnemonics(*this);
}

void PageView::keyPressEvent(QKeyEvent* event) {
  const bool asksHelp = event->key() == Qt::Key_F1 && event->modifiers() == Qt::NoModifier;
  if (!asksHelp) return QScrollArea::keyPressEvent(event);
  event->setAccepted(listener_.help && listener_.help(focusedPath()));
}

}  // namespace vlclientui::widgets
