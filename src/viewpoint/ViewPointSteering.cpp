#include "viewpoint/ViewPointSteering.h"

#include <cmath>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/Toolkit.h"
#include "contracts/VorlaneClient.h"
#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "documents/TextCase.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* point = ".";
constexpr const char* helpPage = "Using_the_viewpoint_functionality";
constexpr const char* metadataLevel = "Basic";
constexpr const char* xMinPath = "//Vorlane/Client/ImageMetadata/Basic/XMin";
constexpr const char* yMinPath = "//Vorlane/Client/ImageMetadata/Basic/YMin";
constexpr const char* xMaxPath = "//Vorlane/Client/ImageMetadata/Basic/XMax";
constexpr const char* yMaxPath = "//Vorlane/Client/ImageMetadata/Basic/YMax";
constexpr const char* xSpacingPath = "//Vorlane/ImageServiceProperties/AvgImageSpacingX";
constexpr const char* ySpacingPath = "//Vorlane/ImageServiceProperties/AvgImageSpacingY";

std::shared_ptr<ImageService> serviceOf(const ObjectPtr& object) {
  auto service = std::dynamic_pointer_cast<ImageService>(object);
  if (!service) failTypeMismatch("the object is no image service");
  return service;
}

double finite(double number) {
  if (!std::isfinite(number)) failOverflow("a coordinate");
  return number;
}

LocaleFormat locale() { return currentPlatform().system->localeFormat(); }

std::string textOf(double number) { return doubleToText(finite(number), locale()); }

/// Moves one box a step. An axis that does not move gets its own text written again.
void step(TextBox& box, int sign, double spacing) {
  const std::string text = box.text();
  box.setText(sign == 0 ? text : textOf(textToDouble(text, locale()) + sign * spacing));
}

void replaceIn(TextBox& box, const std::string& from, const std::string& to) {
  // A write raises change and publishes, so it is avoided when there is nothing to replace.
  if (from.empty() || box.text().find(from) == std::string::npos) return;
  box.setText(replacedAll(box.text(), from, to));
}

/// Writing a box and asking the service let events run, and a click among them is the later one: it counts,
/// and the earlier click stops where it stands.
class Click {
 public:
  explicit Click(std::uint32_t& number) : current_(number), number_(++number) {}
  [[nodiscard]] bool overtaken() const { return current_ != number_; }

 private:
  const std::uint32_t& current_;
  std::uint32_t number_;
};

}  // namespace

const std::array<ViewPointSteering::Move, 8> ViewPointSteering::moves = {{
    {&Controls::MoveUp, 0, +1},
    {&Controls::MoveDown, 0, -1},
    {&Controls::MoveLeft, -1, 0},
    {&Controls::MoveRight, +1, 0},
    {&Controls::MoveNE, +1, +1},
    {&Controls::MoveNW, -1, +1},
    {&Controls::MoveSE, +1, -1},
    {&Controls::MoveSW, -1, -1},
}};

ViewPointSteering::Controls::Controls(ViewPointSteering& form, SteeringRules::OkButton okButton)
    : ViewPointFrame(form, "ViewPointFrame", ""),
      MoveNW(form, "MoveNW"),
      MoveUp(form, "MoveUp"),
      MoveNE(form, "MoveNE"),
      MoveLeft(form, "MoveLeft"),
      Center(form, "Center"),
      MoveRight(form, "MoveRight"),
      MoveSW(form, "MoveSW"),
      MoveDown(form, "MoveDown"),
      MoveSE(form, "MoveSE"),
      uiLblX(form, "uiLblX", "X:"),
      uiTxtBoxX(form, "uiTxtBoxX"),
      uiLblY(form, "uiLblY", "Y:"),
      uiTxtBoxY(form, "uiTxtBoxY") {
  uiTxtBoxX.setToolTip("X Coordinate");
  uiTxtBoxY.setToolTip("Y Coordinate");
  if (okButton == SteeringRules::OkButton::Present) uibtnok.emplace(form, "uibtnok", "&OK");
}

ViewPointSteering::ViewPointSteering(Toolkit& toolkit, SteeringRules rules)
    : Form(toolkit, rules.formName), rules_(std::move(rules)) {
  setCaption(rules_.caption);
}

ViewPointSteering::Controls& ViewPointSteering::controls() {
  load();
  return served(controls_);
}

void ViewPointSteering::RefReshViewpoints() {
  visitWindow(this, [this] { loadViewPointData(); });
}

std::shared_ptr<void> ViewPointSteering::buildControls() {
  controls_ = std::make_shared<Controls>(*this, rules_.okButton);
  connectEvents(*controls_);
  return controls_;
}

void ViewPointSteering::connectEvents(Controls& controls) {
  for (const Move& one : moves) {
    (controls.*one.button).click.connect([this, &one] {
      endsQuietly([&] { move(one); }, "ViewPointSteering::move");
    });
  }
  controls.Center.click.connect([this] { endsQuietly([this] { center(); }, "ViewPointSteering::center"); });
  for (TextBox* const box : {&controls.uiTxtBoxX, &controls.uiTxtBoxY}) {
    box->change.connect([this] { endsQuietly([this] { boxChanged(); }, "ViewPointSteering::boxChanged"); });
  }
  if (controls.uibtnok) {
    controls.uibtnok->click.connect(
        [this] { endsQuietly([this] { accept(); }, "ViewPointSteering::accept"); });
    setDefaultButton(&*controls.uibtnok);
  }
  keyPreview.connect([this](const KeyEvent& key) {
    endsQuietly([&] { LaunchHelp(key.keyCode, key.shift, focusedControl() != nullptr, helpPage); },
                "LaunchHelp");
  });
}

void ViewPointSteering::loadViewPointData() {
  endsQuietly([this] {
    readDecimalSeparator();
    callOut(toolkit())->letPendingEventsRun();
    threadState().gViewPointX.clear();
    threadState().gViewPointY.clear();
    if (readCenter() != CenterRead::Done) return;
    readSpacing();
    if (!separatorIsPoint()) swapDecimalSeparator(controls(), point, decimalSeparator_);
  });
}

void ViewPointSteering::readDecimalSeparator() {
  endsQuietly([this] { readLocaleDecimalSeparator(decimalSeparator_); });
}

ViewPointSteering::CenterRead ViewPointSteering::readCenter() {
  if (!myImageServiceObject && trimmedBlanks(myImageMetaDataXml).empty()) return CenterRead::NoData;
  readExtent();
  for (Axis* const axis : {&x_, &y_}) {
    const double sum = finite(axis->high + axis->low);
    // Deliberate on the sum: an extent that lies symmetrically about 0 has no center here and no step.
    if (sum == 0) {
      endSilently("an extent that lies evenly about 0 has no center");
      return CenterRead::SumIsZero;
    }
    axis->center = sum / 2;
  }
  return CenterRead::Done;
}

void ViewPointSteering::readExtent() {
  std::string& metadata = threadState().gImageMetadataXml;
  metadata = myImageServiceObject ? callOut(serviceOf(myImageServiceObject))->GetImageMetadata(metadataLevel)
                                  : myImageMetaDataXml;
  const auto document = parsedDocument(metadata);
  const auto read = [&](const char* path, double& value) {
    if (const auto text = readText(*document, path)) value = documentNumber(*text);
  };
  read(xMinPath, x_.low);
  read(yMinPath, y_.low);
  const XmlNodePtr yMax = document->selectSingleNode(yMaxPath);
  if (!yMax) return;
  // Deliberate: the presence of the other edge decides whether this one is read.
  const auto xMax = readText(*document, xMaxPath);
  if (!xMax) failMissingObject("XMax");
  x_.high = documentNumber(*xMax);
  y_.high = documentNumber(yMax->text());
}

void ViewPointSteering::readSpacing() {
  const std::string properties = myImageServiceObject
                                     ? callOut(serviceOf(myImageServiceObject))->ServiceProperties()
                                     : threadState().gServicePropertiesXml;
  const auto document = parsedDocument(properties);
  if (const auto text = readText(*document, xSpacingPath)) x_.spacing = documentNumber(*text);
  if (const auto text = readText(*document, ySpacingPath)) y_.spacing = documentNumber(*text);
}

void ViewPointSteering::swapDecimalSeparator(Controls& boxes, const std::string& from,
                                             const std::string& to) {
  endsQuietly([&] {
    replaceIn(boxes.uiTxtBoxX, from, to);
    replaceIn(boxes.uiTxtBoxY, from, to);
  });
}

void ViewPointSteering::clearButtonMarks() {
  for (const Move& one : moves) (served(controls_).*one.button).setMarked(false);
  served(controls_).Center.setMarked(false);
}

void ViewPointSteering::move(const Move& move) {
  const Click click(clickNumber_);
  clearButtonMarks();
  PictureButton& button = served(controls_).*move.button;
  // Writing a box lets pending events run, and they may close the window.
  if (lastMove_ == button.name()) {
    step(served(controls_).uiTxtBoxX, move.dx, x_.spacing);
    if (!click.overtaken()) step(served(controls_).uiTxtBoxY, move.dy, y_.spacing);
  } else {
    served(controls_).uiTxtBoxX.setText(textOf(x_.center + move.dx * x_.spacing));
    if (!click.overtaken()) {
      served(controls_).uiTxtBoxY.setText(textOf(y_.center + move.dy * y_.spacing));
    }
  }
  if (click.overtaken()) return;
  publishBoxes(served(controls_));
  button.setMarked(true);
  lastMove_ = button.name();
}

void ViewPointSteering::center() {
  const Click click(clickNumber_);
  clearButtonMarks();
  if (readCenter() == CenterRead::SumIsZero || click.overtaken()) return;
  // Publishes by the change events of the boxes.
  served(controls_).uiTxtBoxX.setText(textOf(x_.center));
  if (!click.overtaken()) served(controls_).uiTxtBoxY.setText(textOf(y_.center));
  if (click.overtaken()) return;
  served(controls_).Center.setMarked(true);
  lastMove_ = served(controls_).Center.name();
}

void ViewPointSteering::accept() {
  if (!separatorIsPoint()) swapDecimalSeparator(served(controls_), decimalSeparator_, point);
  publishBoxes(served(controls_));
  unload();
}

void ViewPointSteering::boxChanged() {
  Visit::lookAgain();
  if (!controls_) return;
  // Lets the other box's change event arrive before the pair is published.
  callOut(toolkit())->letPendingEventsRun();
  publishBoxes(served(controls_));
}

void ViewPointSteering::windowLeft() {
  if (rules_.whenLeft == SteeringRules::WhenLeft::Publishes && controls_) publishBoxes(*controls_);
}

void ViewPointSteering::publishBoxes(const Controls& boxes) {
  publishViewPoint(boxes.uiTxtBoxX.text(), boxes.uiTxtBoxY.text());
}

void ViewPointSteering::publishViewPoint(const std::string& x, const std::string& y) {
  endsQuietly([&] {
    rules_.announce();
    const bool withPoint =
        rules_.publishedNumbers == SteeringRules::PublishedNumbers::WithPoint && !separatorIsPoint();
    const auto published = [&](const std::string& text) {
      return withPoint ? replacedAll(text, decimalSeparator_, point) : text;
    };
    threadState().gViewPointX = published(x);
    threadState().gViewPointY = published(y);
  });
}

double ViewPointSteering::documentNumber(const std::string& text) const {
  return textToDouble(separatorIsPoint() ? text : replacedAll(text, point, decimalSeparator_), locale());
}

bool ViewPointSteering::separatorIsPoint() const { return decimalSeparator_ == point; }

}  // namespace vlclientui
