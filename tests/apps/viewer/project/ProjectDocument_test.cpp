#include "viewer/project/ProjectDocument.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::viewer {
namespace {

namespace fs = std::filesystem;

constexpr const char* properties =
    "<Vorlane><ImageServiceProperties><ViewPointX>4,5</ViewPointX><LockImageID>2</LockImageID>"
    "</ImageServiceProperties></Vorlane>";

class ProjectDocument : public testing::Test {
 protected:
  [[nodiscard]] fs::path path(const std::string& name) const { return folder_.path() / name; }
  fs::path write(const std::string& text) const {
    std::ofstream(path("written.VLProject"), std::ios::binary) << text;
    return path("written.VLProject");
  }
  static std::string textOf(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
  }
  [[nodiscard]] std::string refusal(const std::string& text) const {
    try {
      static_cast<void>(openProject(xml_, write(text)));
      return {};
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
  }
  [[nodiscard]] static int validate(const fs::path& file) {
    const std::string command = "xmllint --noout --relaxng '" + sourceFolder() +
                                "/definitions/project.rng' '" + file.string() + "' 2>/dev/null";
    return std::system(command.c_str());
  }
  static Project rich() {
    Project project;
    project.view = {-1.25, 46.1, 0.1 + 0.2, 47};
    project.system = "EPSG:2056";
    project.area = {2'605'000.5, 1'094'000, 2'720'000.1 + 0.2, 1'206'000};
    project.picked = 1;
    project.services = {
        {"ImageService://maps.example/World/Geoid", {}},
        {"/data/a & b/<c>.tif",
         {"My \"own\" name", false, 0.35, properties, "coloring=colors bands=4,3,2 lowest=1,2,3"}}};
    return project;
  }

  test::TemporaryFolder folder_;
  platform::LibXmlService xml_{platform::PathTranslation("/home/u")};
};

TEST_F(ProjectDocument, ComesBackAsItWasSaved) {
  saveProject(rich(), xml_, path("a.VLProject"));
  EXPECT_EQ(openProject(xml_, path("a.VLProject")), rich());
  saveProject({}, xml_, path("a.VLProject"));
  EXPECT_EQ(openProject(xml_, path("a.VLProject")), Project());
}

TEST_F(ProjectDocument, IsOfTheShapeThatItsSchemaTells) {
  saveProject(rich(), xml_, path("a.VLProject"));
  EXPECT_EQ(validate(path("a.VLProject")), 0);
  saveProject({}, xml_, path("b.VLProject"));
  EXPECT_EQ(validate(path("b.VLProject")), 0);
  EXPECT_NE(validate(write("<VLProject Version='1'><Services/></VLProject>")), 0);
}

TEST_F(ProjectDocument, IsNotSavedWithoutThePropertiesThatItCannotHold) {
  saveProject(rich(), xml_, path("a.VLProject"));
  Project project;
  project.services = {{"/data/a.tif", {"", true, 1, "<Vorlane>", ""}}};
  EXPECT_THROW(saveProject(project, xml_, path("a.VLProject")), RuntimeFailure);
  EXPECT_EQ(openProject(xml_, path("a.VLProject")), rich()) << "what was there stays";
}

TEST_F(ProjectDocument, FindsFilesThatWereMovedTogetherWithIt) {
  fs::create_directories(path("one/data"));
  std::ofstream(path("one/data/a.tif")) << "pixels";
  Project project;
  project.services = {{path("one/data/a.tif").string(), {}}, {path("elsewhere.tif").string(), {}}};
  saveProject(project, xml_, path("one/p.VLProject"));
  EXPECT_EQ(openProject(xml_, path("one/p.VLProject")), project);
  fs::rename(path("one"), path("two"));
  const Project moved = openProject(xml_, path("two/p.VLProject"));
  EXPECT_EQ(moved.services[0].reference, path("two/data/a.tif").string());
  EXPECT_EQ(moved.services[1].reference, path("elsewhere.tif").string()) << "missing files stay";
}

TEST_F(ProjectDocument, OfASessionTellsTheProjectThatItIsOneOf) {
  Project project = rich();
  project.file = "/home/u/valley & hill.VLProject";
  saveProject(project, xml_, path("session.VLProject"));
  EXPECT_EQ(openProject(xml_, path("session.VLProject")).file, project.file);
}

TEST_F(ProjectDocument, IsWrittenWholeOrNotAtAll) {
  saveProject(rich(), xml_, path("a.VLProject"));
  const std::string before = textOf(path("a.VLProject"));
  EXPECT_THROW(saveProject(rich(), xml_, path("missing/a.VLProject")), RuntimeFailure);
  fs::create_directory(path("folder.VLProject"));
  EXPECT_THROW(saveProject(rich(), xml_, path("folder.VLProject")), RuntimeFailure);
  EXPECT_EQ(textOf(path("a.VLProject")), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 2) << "nothing is left beside it";
}

TEST_F(ProjectDocument, ThatIsNoneIsRefusedWithTheReason) {
  const auto with = [](const std::string& inner) {
    return "<VLProject Version='1'>" + inner + "</VLProject>";
  };
  EXPECT_NE(refusal("").find("is no project: it cannot be read, or is no XML document"), std::string::npos);
  EXPECT_NE(refusal("<Other/>").find("it holds no VLProject"), std::string::npos);
  EXPECT_NE(refusal("<VLProject/>").find("the Version of a VLProject is ''"), std::string::npos);
  EXPECT_NE(refusal("<VLProject Version='2'/>").find("a newer program, as version 2"), std::string::npos);
  EXPECT_NE(refusal(with("<Services><Service/></Services>")).find("a Service has no Reference"),
            std::string::npos);
  EXPECT_NE(refusal(with("<Services><Service Reference='a' Opacity='much'/></Services>"))
                .find("the Opacity of a Service is 'much'"),
            std::string::npos);
}

TEST_F(ProjectDocument, KeepsTheServicesOfOneWhoseViewMakesNoSense) {
  const auto with = [this](const std::string& boxes) {
    return openProject(xml_, write("<VLProject Version='1'><Map>" + boxes +
                                   "</Map><Services><Service Reference='a'/></Services></VLProject>"));
  };
  const std::string view = "<View XMin='0' YMin='0' XMax='1' YMax='5'/>";
  for (const std::string odd : {"<View XMin='1' YMin='0' XMax='1' YMax='5'/>",
                                "<View XMin='nan' YMin='0' XMax='1' YMax='5'/>", "<View XMin='east'/>"}) {
    const Project project = with(odd);
    EXPECT_EQ(project.view, host::GeographicEnvelope()) << odd;
    EXPECT_EQ(project.services.size(), 1U) << odd;
  }
  for (const std::string odd :
       {"<Area XMin='1' YMin='5' XMax='2' YMax='5'/>", "<Area XMin='1' YMin='0' XMax='inf' YMax='5'/>"}) {
    const Project project = with(view + odd);
    EXPECT_FALSE(project.area) << odd;
    EXPECT_EQ(project.view.yMax, 5) << odd;
    EXPECT_EQ(project.services.front().state.opacity, 1) << "where none is told";
  }
}

TEST_F(ProjectDocument, IgnoresWhatItDoesNotKnowAndAPickThatIsNotThere) {
  const fs::path file = write(
      "<VLProject Version='1' More='1'><Later/><Services Picked='7'><Service Reference='a' Opacity='3'><New/>"
      "</Service></Services></VLProject>");
  const Project project = openProject(xml_, file);
  ASSERT_EQ(project.services.size(), 1U);
  EXPECT_EQ(project.services[0].state.opacity, 1) << "brought into its range";
  EXPECT_FALSE(project.picked);
}

TEST(ProjectFiles, AreKnownByTheirEnding) {
  EXPECT_TRUE(isProjectFile("/a/b.VLProject"));
  EXPECT_TRUE(isProjectFile("b.vlproject"));
  EXPECT_FALSE(isProjectFile("b.VLRef"));
  EXPECT_FALSE(isProjectFile("VLProject"));
}

}  // namespace
}  // namespace vlclientui::viewer
