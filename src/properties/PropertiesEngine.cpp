#include "properties/PropertiesEngine.h"

#include "contracts/CallOut.h"
#include "frame/EngineRelease.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* mosaicMethodField = "@MosaicMethod";
constexpr const char* viewPointButton = "@ViewPointControl";
constexpr const char* closestToViewPoint = "Closest to Viewpoint";
/// Accepted only as a person's choice; the search through the entries uses the other spelling.
constexpr const char* viewPoint = "Viewpoint";

void show(Plexa& engine, bool visible) {
  if (const auto button = callOut(engine)->FindControl(viewPointButton)) callOut(button)->Visible(visible);
}

void enable(Plexa& engine, bool enabled) {
  if (const auto button = callOut(engine)->FindControl(viewPointButton)) callOut(button)->Enabled(enabled);
}

/// Without entries the button stays as the definition drew it.
void showButtonIfOffered(Plexa& engine, PlexaControl& methods) {
  for (std::int32_t index = 0; index < callOut(methods)->ListCount(); ++index) {
    const bool found = callOut(methods)->List(index) == closestToViewPoint;
    show(engine, found);
    if (found) return;
  }
}

void prepareButton(Plexa& engine) {
  const auto methods = callOut(engine)->FindControl(mosaicMethodField);
  if (!methods) return;
  showButtonIfOffered(engine, *methods);
  enable(engine, callOut(methods)->Text() == closestToViewPoint);
}

void configure(Plexa& engine, const PropertiesPage& page, const EnginePlace& place) {
  callOut(engine)->EmbeddedMode(true);
  callOut(engine)->AttributeDefinition(page.attributeDefinition);
  callOut(engine)->FormDefinition(page.formDefinition);
  callOut(engine)->DataXml(page.data);
  callOut(engine)->DataRootPath(page.rootPath);
  callOut(engine)->ParentWindow(place.frame);
  callOut(engine)->Top(place.top);
  callOut(engine)->Left(place.left);
  callOut(engine)->Width(place.width);
  callOut(engine)->Height(place.height);
}

/// All three are read back, whatever the first ones say.
bool hasNothingToShow(Plexa& engine) {
  const std::string attributeDefinition = callOut(engine)->AttributeDefinition();
  const std::string formDefinition = callOut(engine)->FormDefinition();
  const std::string data = callOut(engine)->DataXml();
  return attributeDefinition.empty() && formDefinition.empty() && data.empty();
}

}  // namespace

bool showPropertiesPage(std::shared_ptr<Plexa>& engine, const PropertiesPage& page, const EnginePlace& place,
                        EmptyPage emptyPage, const NotifyHandler& notify) {
  releaseEngine(engine);
  const auto shown = callOut(currentPlatform().plexa)->createPlexa();
  engine = shown;
  shown->Notify.connect(notify);
  configure(*shown, page, place);
  if (emptyPage == EmptyPage::LeftBlank && hasNothingToShow(*shown)) return false;
  if (!callOut(shown)->Show()) return false;
  prepareButton(*shown);
  return true;
}

void followMosaicMethod(Plexa& engine, const std::string& method) {
  enable(engine, method == viewPoint || method == closestToViewPoint);
}

}  // namespace vlclientui
