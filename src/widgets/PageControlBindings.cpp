#include "widgets/PageControlBindings.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QTabBar>
#include <QTreeWidget>
#include <map>
#include <string>

#include "contracts/controls/NotedFrame.h"
#include "contracts/controls/PageControls.h"
#include "widgets/ControlBinding.h"
#include "widgets/FormBinder.h"
#include "widgets/Mnemonics.h"
#include "widgets/SymbolIcons.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr int keyRole = Qt::UserRole;

constexpr QLatin1String noteSuffix("Note");

/// A frame's caption stands on a group box, its note in a label of the layout that is named after it; other
/// layouts show neither.
class FrameBinding : public ControlBinding {
 public:
  FrameBinding(FormBinder& binder, Frame& frame, QWidget& widget) : ControlBinding(binder, frame, widget) {
    if (auto* const box = qobject_cast<QGroupBox*>(&widget)) {
      box->setTitle(withMnemonic(widget, frame.caption()));
    }
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect != Aspect::Text) return;
    auto* const label = widget().findChild<QLabel*>(widget().objectName() + noteSuffix);
    if (!label) return;
    const auto* const noted = dynamic_cast<const NotedFrame*>(control());
    const std::string note = noted ? noted->note() : std::string();
    label->setText(toQt(note));
    label->setVisible(!note.empty());
  }
};

class TabStripBinding : public ControlBinding {
 public:
  TabStripBinding(FormBinder& binder, TabStrip& strip, QTabBar& widget)
      : ControlBinding(binder, strip, widget), bar_(widget) {
    connect(&widget, &QTabBar::tabBarClicked, this, [this](int tab) { picked(tab); });
    // The arrow keys change the tab without a click.
    connect(&widget, &QTabBar::currentChanged, this, [this](int tab) {
      if (control() && boundStrip().selected() != static_cast<std::size_t>(tab)) picked(tab);
    });
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Entries) mirrorTabs();
    if (aspect != Aspect::Entries && aspect != Aspect::Selection) return;
    if (boundStrip().selected()) bar_.setCurrentIndex(static_cast<int>(*boundStrip().selected()));
  }

 private:
  [[nodiscard]] TabStrip& boundStrip() const { return static_cast<TabStrip&>(*control()); }

  void picked(int tab) {
    if (tab < 0) return;
    act([this, tab] { boundStrip().userSelects(static_cast<std::size_t>(tab)); }, Aspect::Selection);
  }

  void mirrorTabs() {
    const auto& captions = boundStrip().captions();
    const int wanted = static_cast<int>(captions.size());
    while (bar_.count() > wanted) bar_.removeTab(bar_.count() - 1);
    while (bar_.count() < wanted) bar_.addTab({});
    for (int tab = 0; tab < wanted; ++tab) {
      bar_.setTabText(tab, toQt(captions[static_cast<std::size_t>(tab)]));
    }
  }

  QTabBar& bar_;
};

/// Makes one event of a click, even if its press has already moved the current row and reported that.
class ClickWatch : public QObject {
 public:
  explicit ClickWatch(QAbstractItemView& view) : QObject(&view) { view.viewport()->installEventFilter(this); }

  void currentRowTold() { told_ = true; }
  [[nodiscard]] bool clickIsTold() const { return told_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress) told_ = false;
    return false;
  }

 private:
  bool told_ = false;
};

class TreeViewBinding : public ControlBinding {
 public:
  TreeViewBinding(FormBinder& binder, TreeView& tree, QTreeWidget& widget)
      : ControlBinding(binder, tree, widget), widget_(widget), clicks_(*new ClickWatch(widget)) {
    widget.setHeaderHidden(true);
    connect(&widget, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
      if (!clicks_.clickIsTold()) picked(item);
    });
    connect(&widget, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
      if (!item || !control() || keyOf(*item) == boundTree().selectedKey()) return;
      clicks_.currentRowTold();
      picked(item);
    });
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Entries) mirrorNodes();
    if (aspect == Aspect::Entries || aspect == Aspect::Selection) mirrorSelection();
  }

 private:
  [[nodiscard]] TreeView& boundTree() const { return static_cast<TreeView&>(*control()); }
  [[nodiscard]] static std::string keyOf(const QTreeWidgetItem& item) {
    return item.data(0, keyRole).toString().toStdString();
  }

  void picked(QTreeWidgetItem* item) {
    act([this, key = keyOf(*item)] { boundTree().userSelects(key); }, Aspect::Selection);
  }

  /// Nodes are added at the end only, or all removed.
  void mirrorNodes() {
    if (boundTree().nodes().size() < items_.size()) {
      items_.clear();
      widget_.clear();
    }
    for (std::size_t i = items_.size(); i < boundTree().nodes().size(); ++i) addItem(boundTree().nodes()[i]);
  }

  void addItem(const TreeView::Node& node) {
    auto* const item = new QTreeWidgetItem(QStringList(toQt(node.text)));
    item->setData(0, keyRole, toQt(node.key));
    item->setIcon(0, symbolIcon(symbolOf(node.key)));
    const auto parent = items_.find(node.parentKey);
    if (parent == items_.end()) {
      widget_.addTopLevelItem(item);
    } else {
      parent->second->addChild(item);
      parent->second->setExpanded(true);
    }
    items_.emplace(node.key, item);
  }

  [[nodiscard]] QString symbolOf(const std::string& key) const {
    return widget_.property((std::string(symbolProperty) + "_" + key).c_str()).toString();
  }

  void mirrorSelection() {
    const auto selected = items_.find(boundTree().selectedKey());
    widget_.setCurrentItem(selected == items_.end() ? nullptr : selected->second);
  }

  QTreeWidget& widget_;
  ClickWatch& clicks_;
  std::map<std::string, QTreeWidgetItem*> items_;
};

class ReportListBinding : public ControlBinding {
 public:
  ReportListBinding(FormBinder& binder, ReportList& list, QTreeWidget& widget)
      : ControlBinding(binder, list, widget), widget_(widget), clicks_(*new ClickWatch(widget)) {
    QStringList titles;
    for (const std::string& column : list.columns()) titles.append(toQt(column));
    widget.setHeaderLabels(titles);
    widget.setRootIsDecorated(false);
    connect(&widget, &QTreeWidget::itemClicked, this, [this] {
      if (!clicks_.clickIsTold()) picked();
    });
    connect(&widget, &QTreeWidget::currentItemChanged, this, [this] {
      if (!control() || boundList().selected() == currentRow()) return;
      clicks_.currentRowTold();
      picked();
    });
  }

 protected:
  /// The control decides what a key copies; the widget would copy the first column.
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool isCopy = watched == &widget_ && event->type() == QEvent::KeyPress &&
                        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy);
    return ControlBinding::eventFilter(watched, event) || isCopy;
  }

  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Entries) mirrorRows();
    if (aspect != Aspect::Entries && aspect != Aspect::Selection) return;
    const auto row = boundList().selected();
    widget_.setCurrentItem(row ? widget_.topLevelItem(static_cast<int>(*row)) : nullptr);
  }

 private:
  [[nodiscard]] ReportList& boundList() const { return static_cast<ReportList&>(*control()); }
  [[nodiscard]] std::optional<std::size_t> currentRow() const {
    const int row = widget_.indexOfTopLevelItem(widget_.currentItem());
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
  }

  void picked() {
    if (const auto row = currentRow()) act([this, row] { boundList().userSelects(*row); }, Aspect::Selection);
  }

  /// Rows are added at the end only, or all removed.
  void mirrorRows() {
    const auto& rows = boundList().rows();
    if (rows.size() < static_cast<std::size_t>(widget_.topLevelItemCount())) widget_.clear();
    for (auto row = static_cast<std::size_t>(widget_.topLevelItemCount()); row < rows.size(); ++row) {
      QStringList cells;
      for (const std::string& cell : rows[row]) cells.append(toQt(cell));
      widget_.addTopLevelItem(new QTreeWidgetItem(cells));
    }
  }

  QTreeWidget& widget_;
  ClickWatch& clicks_;
};

}  // namespace

bool pageWidgetSuits(ControlKind kind, const QWidget& widget) {
  if (kind == ControlKind::Frame) return true;
  if (kind == ControlKind::TabStrip) return qobject_cast<const QTabBar*>(&widget) != nullptr;
  return qobject_cast<const QTreeWidget*>(&widget) != nullptr;
}

ControlBinding& makePageBinding(FormBinder& binder, Control& control, QWidget& widget) {
  if (auto* const frame = dynamic_cast<Frame*>(&control)) return *new FrameBinding(binder, *frame, widget);
  if (auto* const strip = dynamic_cast<TabStrip*>(&control)) {
    return *new TabStripBinding(binder, *strip, dynamic_cast<QTabBar&>(widget));
  }
  auto& list = dynamic_cast<QTreeWidget&>(widget);
  if (auto* const tree = dynamic_cast<TreeView*>(&control)) return *new TreeViewBinding(binder, *tree, list);
  return *new ReportListBinding(binder, dynamic_cast<ReportList&>(control), list);
}

}  // namespace vlclientui::widgets
