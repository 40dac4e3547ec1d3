#include "widgets/SampleForm.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "widgets/FormBinder.h"

namespace vlclientui::test {

namespace {

template <class Widget>
Widget& add(QWidget& root, const char* name) {
  auto* widget = new Widget;
  widget->setObjectName(QLatin1String(name));
  root.layout()->addWidget(widget);
  return *widget;
}

void buildForm(QWidget& root) {
  new QVBoxLayout(&root);
  auto& caption = add<QLabel>(root, "caption");
  caption.setBuddy(&add<QLineEdit>(root, "box"));
  auto& server = add<QComboBox>(root, "server");
  server.setEditable(true);
  server.setProperty(widgets::showsPathProperty, true);
  add<QComboBox>(root, "choice");
  add<QListWidget>(root, "list").setProperty(widgets::showsPathProperty, true);
  add<QCheckBox>(root, "check");
  add<QPushButton>(root, "button");
  add<QToolButton>(root, "picture");
  add<QWidget>(root, "hosted");
  add<QPushButton>(root, "accept");
  add<QPushButton>(root, "cancel");
  add<QTabBar>(root, "tabs");
  add<QTreeWidget>(root, "tree");
  add<QTreeWidget>(root, "report");
  add<QGroupBox>(root, "frame");
}

void buildHosted(QWidget& root) {
  auto* layout = new QVBoxLayout(&root);
  add<QLineEdit>(root, "inner");
  auto& slot = add<QFrame>(root, "slot");
  slot.setProperty(widgets::engineSlotProperty, true);
  (new QVBoxLayout(&slot))->setContentsMargins(0, 0, 0, 0);
  layout->addStretch();
}

}  // namespace

SampleHosted::SampleHosted(ControlContainer& container)
    : HostedControl(&container, "hosted", "SampleHosted") {}

SampleForm::Controls::Controls(SampleForm& form)
    : caption(form, "caption", "&Name:"),
      box(form, "box"),
      server(form, "server"),
      choice(form, "choice"),
      list(form, "list"),
      check(form, "check", "&Filter"),
      button(form, "button", "&Press"),
      picture(form, "picture", "Picture", ControlKind::PictureButton),
      hosted(form),
      accept(form, "accept", "&OK"),
      cancel(form, "cancel", "&Cancel"),
      tabs(form, "tabs", {"First", "Second", "Third"}),
      tree(form, "tree"),
      report(form, "report", {"Name", "Value"}),
      frame(form, "frame", "Extents") {}

SampleForm::SampleForm(Toolkit& toolkit) : Form(toolkit, "SampleForm") { setCaption("Sample"); }

SampleForm::~SampleForm() = default;

std::shared_ptr<void> SampleForm::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  Controls& c = *controls_;
  for (Control* control : Form::controls()) record(*control);
  record(c.hosted.inner);
  c.box.change.connect([this] { log.push_back("box change " + controls_->box.text()); });
  c.server.change.connect([this] { log.push_back("server change " + controls_->server.text()); });
  c.server.click.connect([this] { log.push_back("server click " + controls_->server.text()); });
  c.choice.click.connect([this] { log.push_back("choice click " + controls_->choice.text()); });
  c.list.click.connect([this] { log.emplace_back("list click"); });
  c.check.click.connect([this] { log.emplace_back(controls_->check.checked() ? "check on" : "check off"); });
  c.button.click.connect([this] { log.emplace_back("button click"); });
  c.picture.click.connect([this] { log.emplace_back("picture click"); });
  c.accept.click.connect([this] { log.emplace_back("accept click"); });
  c.tabs.click.connect([this] { log.push_back("tab " + controls_->tabs.selectedCaption()); });
  c.tree.nodeClick.connect([this] { log.push_back("node " + controls_->tree.selectedKey()); });
  c.report.click.connect(
      [this] { log.push_back("row " + std::to_string(controls_->report.selected().value())); });
  c.cancel.click.connect([this] { unload(); });
  setCancelButton(&c.cancel);
  return controls_;
}

void SampleForm::onLoad() {
  if (afterLoad) afterLoad();
}

void SampleForm::record(Control& control) {
  control.gotFocus.connect([this, &control] { log.push_back(control.name() + " got focus"); });
  control.lostFocus.connect([this, &control] { log.push_back(control.name() + " lost focus"); });
  control.keyDown.connect([this, &control](const KeyEvent& key) {
    log.push_back(control.name() + " key " + std::to_string(key.keyCode) + "/" + std::to_string(key.shift));
  });
}

widgets::ViewRegistry sampleViews() {
  widgets::ViewRegistry views;
  views.add("SampleForm", buildForm);
  views.add("SampleHosted", buildHosted);
  return views;
}

WidgetTest::WidgetTest()
    : system(std::make_shared<TestSystem>()),
      toolkit(std::make_shared<widgets::QtToolkit>(system, widgets::pathTextsOf(system), sampleViews())),
      form(*toolkit) {}

void WidgetTest::show(const std::function<void()>& script) {
  bool ran = false;
  QTimer::singleShot(0, [&] {
    EXPECT_TRUE(QTest::qWaitForWindowActive(toolkit->viewOf(form)));
    takeLog();
    script();
    ran = true;
    if (form.loaded()) form.userCloses();
  });
  form.showModal();
  EXPECT_TRUE(ran);
}

void WidgetTest::answerNextMessage(const QString& buttonText, const std::function<void()>& meanwhile) {
  QTimer::singleShot(0, [this, buttonText, meanwhile] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_TRUE(box);
    messages.push_back(box->text());
    if (meanwhile) meanwhile();
    for (QAbstractButton* button : box->buttons()) {
      if (button->text().remove(QLatin1Char('&')) == buttonText) return button->click();
    }
    FAIL() << "no button " << buttonText.toStdString();
  });
}

}  // namespace vlclientui::test
