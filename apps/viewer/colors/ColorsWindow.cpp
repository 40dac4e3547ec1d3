#include "viewer/colors/ColorsWindow.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <algorithm>
#include <functional>
#include <initializer_list>
#include <utility>

#include "host/DesktopWindows.h"
#include "viewer/colors/LegendView.h"
#include "viewer/colors/NumberBox.h"
#include "widgets/ComboBoxNames.h"

namespace vlclientui::viewer {
namespace {

using client::Coloring;
using client::Ramp;

constexpr int untilMapFollows = 120;  // milliseconds that a person stands still before the map follows
constexpr QSize rampSize(64, 14);
constexpr int nameLetters = 16;  // of a band
constexpr std::array<Ramp, 8> ramps = {Ramp::Gray, Ramp::Dusk,   Ramp::Lagoon, Ramp::Ice,
                                       Ramp::Heat, Ramp::Ground, Ramp::Water,  Ramp::Spectrum};

QIcon iconOf(Ramp ramp) {
  return QIcon(QPixmap::fromImage(rampImage(ramp, rampSize.width()).scaled(rampSize)));
}

QString rowLabel(std::size_t place, std::size_t count) {
  if (count == 1) return ColorsWindow::tr("&Band:");
  return place == 0   ? ColorsWindow::tr("&Red:")
         : place == 1 ? ColorsWindow::tr("&Green:")
                      : ColorsWindow::tr("B&lue:");
}

}  // namespace

ColorsWindow::ColorsWindow(ColoredServices& services, QWidget* parent)
    : QDialog(parent),
      services_(services),
      reader_(new ColorsReader(this)),
      choices_(new QWidget),
      coloring_(new QComboBox),
      ramp_(new QComboBox),
      lift_(new NumberBox),
      exaggeration_(new NumberBox),
      rampLabel_(new QLabel(tr("Row of &colors:"))),
      liftLabel_(new QLabel(tr("&Middle tones:"))),
      exaggerationLabel_(new QLabel(tr("E&xaggeration:"))),
      state_(new QLabel),
      legend_(new LegendView) {
  setObjectName("ColorsWindow");
  auto* const grid = new QGridLayout(choices_);
  grid->setContentsMargins({});
  makeColoring(*grid);
  for (std::size_t place = 0; place < rows_.size(); ++place) makeRow(*grid, place);
  makeSpanButtons(*grid);
  makeChoices(*grid);
  state_->setObjectName("ColorsState");
  state_->setWordWrap(true);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(choices_);
  layout->addWidget(legend_);
  layout->addWidget(state_);
  layout->addStretch();
  layout->addWidget(makeButtons());
  host::openHelpByKey(*this, "Using_the_viewer");
  for (QComboBox* const box : findChildren<QComboBox*>()) widgets::nameByLabel(*box);
  follow();
  showService({});
}

QWidget* ColorsWindow::makeButtons() {
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Reset | QDialogButtonBox::Close);
  reset_ = buttons->button(QDialogButtonBox::Reset);
  reset_->setObjectName("ResetColors");
  reset_->setToolTip(tr("As the service looks by itself"));
  connect(reset_, &QPushButton::clicked, this, [this] { change([](auto& draft) { draft.reset(); }); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  // Enter in a box of a number is meant for that number.
  for (QAbstractButton* const button : buttons->buttons())
    dynamic_cast<QPushButton&>(*button).setAutoDefault(false);
  return buttons;
}

void ColorsWindow::follow() {
  soon_.setSingleShot(true);
  soon_.setInterval(untilMapFollows);
  connect(&soon_, &QTimer::timeout, this, &ColorsWindow::keep);
  connect(reader_, &ColorsReader::colorsRead, this, &ColorsWindow::begin);
  connect(reader_, &ColorsReader::spreadsRead, this, [this](const auto& bands, const auto& spreads) {
    change([&](ColorsDraft& draft) { draft.learn(bands, spreads); });
  });
  connect(reader_, &ColorsReader::failed, this,
          [this](const QString& problem) { showState(tr("Cannot be read: %1").arg(problem)); });
  connect(&services_, &ColoredServices::changed, this, &ColorsWindow::followServices);
}

// One that was being read can be asked now; one with other properties may look otherwise by itself.
void ColorsWindow::followServices() {
  if (reference_.isEmpty()) return;
  const auto service = services_.find(reference_);
  if (!service) return showService({});
  if (service->drawing != drawing_ && isVisible()) showService(QString(reference_));
}

void ColorsWindow::makeColoring(QGridLayout& grid) {
  auto* const label = new QLabel(tr("&Show as:"));
  label->setBuddy(coloring_);
  coloring_->setObjectName("Coloring");
  grid.addWidget(label, 0, 0);
  grid.addWidget(coloring_, 0, 1, 1, 3);
  grid.addWidget(new QLabel(tr("Lowest")), 1, 2);
  grid.addWidget(new QLabel(tr("Highest")), 1, 3);
  grid.setColumnStretch(1, 1);
  connect(coloring_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    const auto coloring = static_cast<Coloring>(coloring_->itemData(index).toInt());
    change([&](ColorsDraft& draft) { draft.setColoring(coloring); });
  });
}

void ColorsWindow::makeRow(QGridLayout& grid, std::size_t place) {
  BandRow& one = rows_[place];
  one = {new QLabel, new QComboBox, new NumberBox, new NumberBox};
  const QString number = QString::number(place + 1);
  one.band->setObjectName("Band" + number);
  one.band->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  one.band->setMinimumContentsLength(nameLetters);
  one.low->setObjectName("Lowest" + number);
  one.high->setObjectName("Highest" + number);
  one.low->setAccessibleName(tr("Lowest value"));
  one.high->setAccessibleName(tr("Highest value"));
  one.label->setBuddy(one.band);
  int column = 0;
  for (QWidget* const part : std::initializer_list<QWidget*>{one.label, one.band, one.low, one.high})
    grid.addWidget(part, static_cast<int>(place) + 2, column++);
  connect(one.band, qOverload<int>(&QComboBox::activated), this, [this, place](int index) {
    const int band = rows_[place].band->itemData(index).toInt();
    change([&](ColorsDraft& draft) { draft.setBand(place, band); });
  });
  const auto takeSpan = [this, place] {
    const client::ValueSpan span{rows_[place].low->value(), rows_[place].high->value()};
    change([&](ColorsDraft& draft) { draft.setSpan(place, span); });
  };
  connect(one.low, qOverload<double>(&QDoubleSpinBox::valueChanged), this, takeSpan);
  connect(one.high, qOverload<double>(&QDoubleSpinBox::valueChanged), this, takeSpan);
}

QPushButton* ColorsWindow::spanButton(const char* name, const QString& text, SpanBy by) {
  auto* const button = new QPushButton(text);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this,
          [this, by] { change([by](ColorsDraft& draft) { draft.use(by); }); });
  return button;
}

void ColorsWindow::makeSpanButtons(QGridLayout& grid) {
  usual_ = spanButton("UsualSpan", tr("&2 to 98 percent"), SpanBy::Usual);
  usual_->setToolTip(tr("Between which 96 percent of the values of a sample lie"));
  whole_ = spanButton("WholeSpan", tr("Smallest to gr&eatest"), SpanBy::Whole);
  whole_->setToolTip(tr("The smallest and the greatest value of a sample"));
  type_ = spanButton("TypeSpan", tr("Range of the &type"), SpanBy::Type);
  type_->setToolTip(tr("All that the type of the values can hold"));
  auto* const buttons = new QHBoxLayout;
  for (QPushButton* const button : {usual_, whole_, type_}) buttons->addWidget(button);
  grid.addLayout(buttons, 5, 0, 1, 4);
}

void ColorsWindow::makeChoices(QGridLayout& grid) {
  ramp_->setObjectName("Ramp");
  ramp_->setIconSize(rampSize);
  for (const Ramp ramp : ramps) ramp_->addItem(iconOf(ramp), rampName(ramp), static_cast<int>(ramp));
  lift_->setObjectName("Lift");
  lift_->setRange(0.1, 10);
  lift_->setToolTip(tr("Below 1 lifts what is dark, above 1 lowers what is bright"));
  exaggeration_->setObjectName("Exaggeration");
  exaggeration_->setRange(0.01, 1000);
  exaggeration_->setToolTip(tr("How many times steeper the ground looks than it is"));
  int line = 6;
  for (const auto& [label, field] : {std::pair<QLabel*, QWidget*>{rampLabel_, ramp_},
                                     {liftLabel_, lift_},
                                     {exaggerationLabel_, exaggeration_}}) {
    label->setBuddy(field);
    grid.addWidget(label, line, 0);
    grid.addWidget(field, line++, 1, 1, 3);
  }
  connect(ramp_, qOverload<int>(&QComboBox::activated), this, [this](int index) {
    const auto ramp = static_cast<Ramp>(ramp_->itemData(index).toInt());
    change([&](ColorsDraft& draft) { draft.setRamp(ramp); });
  });
  connect(lift_, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
          [this](double lift) { change([&](ColorsDraft& draft) { draft.setLift(lift); }); });
  connect(exaggeration_, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
          [this](double times) { change([&](ColorsDraft& draft) { draft.setExaggeration(times); }); });
}

void ColorsWindow::showService(const QString& reference) {
  if (soon_.isActive()) keep();
  reader_->giveUp();
  reference_ = reference;
  draft_.reset();
  drawing_.reset();
  const auto service = services_.find(reference_);
  setWindowTitle(service ? tr("Colors of %1").arg(service->name) : tr("Colors"));
  if (service) drawing_ = service->drawing;
  if (drawing_) reader_->readColors(drawing_);
  showDraft();
  showState(!service                ? tr("Pick a service in the list.")
            : service->isUnreadable ? tr("The service cannot be read.")
                                    : tr("Reading\u2026"));
}

void ColorsWindow::begin(const client::ServiceColors& colors) {
  const auto service = services_.find(reference_);
  if (!service) return;
  draft_.emplace(colors, service->stretch.empty() ? std::nullopt : client::stretchOf(service->stretch));
  showState({});
  showDraft();
}

// What the boxes tell while they are filled is no person's wish.
void ColorsWindow::change(const std::function<void(ColorsDraft&)>& what) {
  if (!draft_ || isShowing_) return;
  what(*draft_);
  const auto missing = draft_->missing();
  if (!missing.empty()) reader_->readSpreads(drawing_, missing);
  showState(missing.empty() ? QString() : tr("Reading\u2026"));
  showDraft();
  soon_.start();
}

void ColorsWindow::keep() {
  soon_.stop();
  if (draft_) services_.keep(reference_, draft_->text());
}

void ColorsWindow::showState(const QString& text) {
  state_->setText(text);
  state_->setVisible(!text.isEmpty());
}

void ColorsWindow::showDraft() {
  isShowing_ = true;
  choices_->setEnabled(draft_.has_value());
  reset_->setEnabled(draft_ && !draft_->text().empty());
  coloring_->clear();
  for (std::size_t place = 0; place < rows_.size(); ++place) showRow(place);
  legend_->showLines({}, {});
  if (draft_) showChoices(*draft_);
  isShowing_ = false;
}

void ColorsWindow::showChoices(const ColorsDraft& draft) {
  const client::Stretch& stretch = draft.stretch();
  for (const Coloring one : draft.colorings()) coloring_->addItem(coloringName(one), static_cast<int>(one));
  coloring_->setCurrentIndex(coloring_->findData(static_cast<int>(stretch.coloring)));
  usual_->setEnabled(draft.mayUse(SpanBy::Usual));
  whole_->setEnabled(draft.mayUse(SpanBy::Whole));
  type_->setEnabled(draft.mayUse(SpanBy::Type));
  const auto enable = [](QWidget* label, QWidget* field, bool isThere) {
    label->setEnabled(isThere);
    field->setEnabled(isThere);
  };
  enable(rampLabel_, ramp_, draft.hasRamp());
  enable(liftLabel_, lift_, draft.hasRamp() || stretch.coloring == Coloring::Colors);
  enable(exaggerationLabel_, exaggeration_, draft.hasExaggeration());
  ramp_->setCurrentIndex(ramp_->findData(static_cast<int>(stretch.ramp)));
  lift_->setValue(stretch.lift);
  exaggeration_->setValue(stretch.exaggeration);
  legend_->showLines({}, legendOf(stretch, draft.colors()));
}

void ColorsWindow::showRow(std::size_t place) {
  BandRow& one = rows_[place];
  const std::size_t count = draft_ ? draft_->bandCount() : 1;
  const bool isShown = place < count;
  for (QWidget* const part : std::initializer_list<QWidget*>{one.label, one.band, one.low, one.high})
    part->setVisible(isShown);
  one.label->setText(rowLabel(place, count));
  one.band->clear();
  if (!draft_) return;
  for (const auto& band : draft_->colors().bands)
    one.band->addItem(QString::fromStdString(band.name), band.number);
  one.band->setCurrentIndex(one.band->findData(draft_->stretch().bands[place]));
  const bool hasSpan = place < draft_->spans();
  one.low->setEnabled(hasSpan);
  one.high->setEnabled(hasSpan);
  one.low->setValue(draft_->stretch().lowest[place]);
  one.high->setValue(draft_->stretch().highest[place]);
}

}  // namespace vlclientui::viewer
