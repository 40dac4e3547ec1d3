#include "properties/PropertiesEngine.h"

#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* mosaicMethodField = "@MosaicMethod";
constexpr const char* viewPointButton = "@ViewPointControl";
constexpr const char* closestToViewPoint = "Closest to Viewpoint";
/// Accepted only as a person's choice; the search through the entries uses the other spelling.
constexpr const char* viewPoint = "Viewpoint";

void show(Plexa& engine, bool visible) {
  if (const auto button = engine.FindControl(viewPointButton)) button->Visible(visible);
}

void enable(Plexa& engine, bool enabled) {
  if (const auto button = engine.FindControl(viewPointButton)) button->Enabled(enabled);
}

/// Without entries the button stays as the definition drew it.
void showButtonIfOffered(Plexa& engine, const PlexaControl& methods) {
  for (std::int32_t index = 0; index < methods.ListCount(); ++index) {
    const bool found = methods.List(index) == closestToViewPoint;
    show(engine, found);
    if (found) return;
  }
}

void prepareButton(Plexa& engine) {
  const auto methods = engine.FindControl(mosaicMethodField);
  if (!methods) return;
  showButtonIfOffered(engine, *methods);
  enable(engine, methods->Text() == closestToViewPoint);
}

void configure(Plexa& engine, const PropertiesPage& page, const EnginePlace& place) {
  engine.EmbeddedMode(true);
  engine.AttributeDefinition(page.attributeDefinition);
  engine.FormDefinition(page.formDefinition);
  engine.DataXml(page.data);
  engine.DataRootPath(page.rootPath);
  engine.ParentWindow(place.frame);
  engine.Top(place.top);
  engine.Left(place.left);
  engine.Width(place.width);
  engine.Height(place.height);
}

/// All three are read back, whatever the first ones say.
bool hasNothingToShow(const Plexa& engine) {
  const std::string attributeDefinition = engine.AttributeDefinition();
  const std::string formDefinition = engine.FormDefinition();
  const std::string data = engine.DataXml();
  return attributeDefinition.empty() && formDefinition.empty() && data.empty();
}

}  // namespace

void detachAndRelease(std::shared_ptr<Plexa>& engine) {
  if (!engine) return;
  engine->ParentWindow(0);
  engine.reset();
}

bool showPropertiesPage(std::shared_ptr<Plexa>& engine, const PropertiesPage& page, const EnginePlace& place,
                        EmptyPage emptyPage, const NotifyHandler& notify) {
  detachAndRelease(engine);
  engine = currentPlatform().plexa->createPlexa();
  const auto shown = engine;
  shown->Notify.connect(notify);
  configure(*shown, page, place);
  if (emptyPage == EmptyPage::LeftBlank && hasNothingToShow(*shown)) return false;
  if (!shown->Show()) return false;
  prepareButton(*shown);
  return true;
}

void followMosaicMethod(Plexa& engine, const std::string& method) {
  enable(engine, method == viewPoint || method == closestToViewPoint);
}

}  // namespace vlclientui
