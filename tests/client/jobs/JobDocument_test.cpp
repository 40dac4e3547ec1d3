#include "client/jobs/JobDocument.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"
#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using client::ExportJob;

constexpr const char* shortest = R"(<VLJob Version="1">
  <Service Reference="ImageService://127.0.0.1/World/EGM96_Geoid"/>
  <Extent Left="0" Bottom="-1.5" Right="10" Top="20"/>
  <Grid Columns="100" Rows="215"/>
  <Format Name="PNG"/>
  <File Path="/out/geoid.png"/>
</VLJob>
)";

class JobDocument : public testing::Test {
 protected:
  static ExportJob rich() {
    ExportJob job;
    job.reference = "ImageService://maps.example/World/\"Geoid\" & <more>";
    job.properties = "<Vorlane><ImageServiceProperties><NoData>0</NoData></ImageServiceProperties></Vorlane>";
    job.system = "EPSG:32632";
    job.extent = {500'000.1 + 0.2, -1e-9, 1.0 / 3 * 2'000'000, 5'150'000};
    job.columns = 1234;
    job.rows = 2147483647;
    job.compression = Compression::Lz77;
    job.tileSize = 512;
    job.quality = 75;
    job.createsWorldFile = true;
    job.exportsMetadata = true;
    job.file = "/data/out of here/image.Tif";
    return job;
  }
  [[nodiscard]] ExportJob read(const std::string& text) const { return client::readJob(text, "/jobs", xml_); }
  /// The shortest job with one thing put in place of another.
  [[nodiscard]] static std::string altered(const std::string& from, const std::string& to) {
    std::string text = shortest;
    const auto found = text.find(from);
    EXPECT_NE(found, std::string::npos) << from;
    return text.replace(found, from.size(), to);
  }
  [[nodiscard]] std::string refusal(const std::string& text) const {
    try {
      static_cast<void>(read(text));
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "taken";
  }
  [[nodiscard]] int validate(const std::string& text) const {
    const fs::path file = folder_.path() / "job.xml";
    std::ofstream(file) << text;
    const std::string command = "xmllint --noout --schema '" + sourceFolder() + "/definitions/job.xsd' '" +
                                file.string() + "' 2>/dev/null";
    return std::system(command.c_str());
  }

  platform::LibXmlService xml_{platform::PathTranslation("/home/someone")};
  TemporaryFolder folder_;
};

TEST_F(JobDocument, ReadsBackWhatWasWrittenToTheLastBit) {
  EXPECT_EQ(read(client::jobDocument(rich(), xml_)), rich());
}

TEST_F(JobDocument, IsOfTheShapeThatItsSchemaTells) {
  EXPECT_EQ(validate(client::jobDocument(rich(), xml_)), 0);
  EXPECT_EQ(validate(shortest), 0);
  ExportJob plain = read(shortest);
  EXPECT_EQ(validate(client::jobDocument(plain, xml_)), 0);
}

TEST_F(JobDocument, RefusesWhatTheSchemaRefusesAndTellsWhy) {
  const std::pair<std::string, std::string> cases[] = {
      {altered("Version=\"1\"", "Version=\"2\""), "it was written by a newer program, as version 2"},
      {altered(" Version=\"1\"", ""), "the VLJob tells no Version"},
      {altered("Reference=\"ImageService://127.0.0.1/World/EGM96_Geoid\"", ""),
       "the Service tells no Reference"},
      {altered("Left=\"0\"", "Left=\"nan\""), "Left of the Extent must be a number, not 'nan'"},
      {altered("Left=\"0\"", "Left=\"0,5\""), "Left of the Extent must be a number, not '0,5'"},
      {altered("Columns=\"100\"", "Columns=\"0\""),
       "Columns of the Grid must be a whole number from 1 on, not '0'"},
      {altered("Name=\"PNG\"", "Name=\"BMP\""),
       "Name of the Format must be Tiff, JPEG, JPEG2000 and PNG, not 'BMP'"},
      {altered("Name=\"PNG\"", "Name=\"PNG\" Qualty=\"75\""), "a Format has no Qualty"},
      {altered("Name=\"PNG\"", "Name=\"PNG\" Quality=\"101\""),
       "Quality of the Format must be a whole number from 0 to 100, not '101'"},
      {altered("Name=\"PNG\"", "Name=\"PNG\" WorldFile=\"maybe\""),
       "WorldFile of the Format must be true or false, not 'maybe'"},
      {altered("Path=\"/out/geoid.png\"", "Path=\"\""), "the File tells no Path"},
      {altered("<Grid Columns=\"100\" Rows=\"215\"/>", ""), "it has no Grid"},
      {altered("<Format", "<Grid Columns=\"1\" Rows=\"1\"/><Format"), "it has more than one Grid"},
      {altered("<Format", "<Color/><Format"), "a VLJob holds no Color"},
  };
  for (const auto& [text, reason] : cases) {
    EXPECT_EQ(refusal(text), reason);
    EXPECT_NE(validate(text), 0) << text;
  }
}

TEST_F(JobDocument, RefusesWhatNoSchemaCanTell) {
  EXPECT_EQ(refusal("no document"), "it is no XML document");
  EXPECT_EQ(refusal("<VLProject Version='1'/>"), "it holds no VLJob");
  EXPECT_EQ(refusal(std::string("<Both>") + shortest + shortest + "</Both>"), "it holds more than one VLJob");
  EXPECT_EQ(refusal(altered("Right=\"10\"", "Right=\"0\"")), "Right of the Extent is not beyond Left");
  EXPECT_EQ(refusal(altered("Top=\"20\"", "Top=\"-2\"")), "Top of the Extent is not above Bottom");
  EXPECT_EQ(refusal(altered("Name=\"PNG\"", "Name=\"PNG\" TileSize=\"100\"")),
            "TileSize of the Format must be a multiple of 16, not '100'");
  EXPECT_EQ(refusal(altered("Name=\"PNG\"", "Name=\"PNG\" Compression=\"LZ77\"")),
            "only a Tiff has a Compression");
}

TEST_F(JobDocument, CountsRelativePathsFromItsFolder) {
  const std::string reference = "ImageService://127.0.0.1/World/EGM96_Geoid";
  EXPECT_EQ(read(altered("/out/geoid.png", "out/geoid.png")).file, "/jobs/out/geoid.png");
  EXPECT_EQ(read(altered(reference, "data/a.tif")).reference, "/jobs/data/a.tif");
  EXPECT_EQ(read(altered(reference, "VLDef://m.VLDef")).reference, "VLDef:///jobs/m.VLDef");
  EXPECT_EQ(read(shortest).reference, reference);
}

TEST_F(JobDocument, KeepsNamesWithAnyCharacterThatADocumentHolds) {
  ExportJob job = rich();
  job.reference = "/maps/tab\there\nand <there> \"&'\r.tif";
  job.file = "/out/line\nend.tif";
  EXPECT_EQ(read(jobDocument(job, xml_)), job);
}

TEST_F(JobDocument, TakesNumbersAndFlagsAsItsSchemaDoes) {
  const std::string blanks = altered("Columns=\"100\"", "Columns=\" 100\n\"");
  EXPECT_EQ(validate(blanks), 0);
  EXPECT_EQ(read(blanks).columns, 100);
  for (const char* const attribute :
       {"Quality=\"\"", "Quality=\"+5\"", "WorldFile=\"\"", "TileSize=\"\"", "Compression=\"\""}) {
    const std::string text = altered("Name=\"PNG\"", "Name=\"PNG\" " + std::string(attribute));
    EXPECT_NE(refusal(text), "") << attribute;
    EXPECT_NE(validate(text), 0) << attribute;
  }
}

TEST_F(JobDocument, IsFoundInTheDocumentAroundIt) {
  EXPECT_EQ(read(std::string("<Metadata><Name>a</Name>") + shortest + "</Metadata>"), read(shortest));
}

TEST_F(JobDocument, IsKeptInAFileAndNamesItWhereItCannotBeRead) {
  const fs::path file = folder_.path() / "a.VLJob";
  client::saveJob(rich(), file, xml_);
  EXPECT_EQ(client::openJob(file, xml_), rich());
  std::ofstream(file) << "<VLJob";
  const auto reasonOf = [&](const fs::path& each) -> std::string {
    try {
      static_cast<void>(client::openJob(each, xml_));
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "taken";
  };
  EXPECT_EQ(reasonOf(file), "'" + file.string() + "' is no job: it is no XML document");
  EXPECT_EQ(reasonOf("/nowhere/a.VLJob"),
            "'/nowhere/a.VLJob' is no job: it cannot be read: No such file or directory");
}

TEST_F(JobDocument, LeavesTheFormerFileWhereItCannotBeWritten) {
  const fs::path file = folder_.path() / "a.VLJob";
  client::saveJob(rich(), file, xml_);
  ExportJob broken = rich();
  broken.properties = "<no properties/>";
  EXPECT_THROW(client::saveJob(broken, file, xml_), RuntimeFailure);
  EXPECT_EQ(client::openJob(file, xml_), rich());
}

}  // namespace
}  // namespace vlclientui::test
