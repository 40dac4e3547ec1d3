// Every silent refusal of the engine reaches the observer.

#include "engine/EngineFixture.h"
#include "support/HeardSilence.h"

namespace vlclientui::engine {
namespace {

TEST(EngineSilence, IsTold) {
  EngineFactory factory(testXml(),
                        std::make_shared<headless::HeadlessSurfaceFactory>(headless::ChildWindowHooks{}), {});
  const auto made = [&factory] {
    auto engine = factory.createPlexa();
    engine->ParentWindow(hostWindow);
    return engine;
  };
  test::expectHeard({
      {"Engine::SetOption: there is no option 'Colour'", [&] { made()->SetOption("Colour", "red"); }},
      {"Engine::setYesNo: an option is neither true nor false",
       [&] { made()->SetOption("readonly", "perhaps"); }},
      {"ListRows::parse: the rows are no list_values", [&] { made()->SetOption("List_Values", "<Rows/>"); }},
      {"ListRows::parse: a text of 5 bytes is no XML document",
       [&] { made()->SetOption("List_Values", "<open"); }},
      {"parseListFields: the columns are no list_fields",
       [&] { made()->SetOption("List_Fields", "<Rows/>"); }},
      {"Engine::showForm: an embedded page needs a window to stand in",
       [&] {
         const auto engine = factory.createPlexa();
         engine->EmbeddedMode(true);
         EXPECT_FALSE(engine->Show());
       }},
      {"Engine::buildPage: The data are no XML document",
       [&] {
         const auto engine = made();
         engine->FormDefinition("<Vorlane><A/></Vorlane>");
         engine->DataXml("<open");
         EXPECT_FALSE(engine->Show());
       }},
      {"TreeModel::parse: a text of 5 bytes is no XML document",
       [&] {
         const auto engine = made();
         engine->SetOption("treeviewdisplay", "True");
         engine->DataXml("<open");
         EXPECT_FALSE(engine->Show());
       }},
  });
}

}  // namespace
}  // namespace vlclientui::engine
