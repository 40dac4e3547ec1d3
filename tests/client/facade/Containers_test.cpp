#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/catalogue/Catalogue.h"
#include "client/raster/GdalScope.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using Names = std::vector<std::string>;

// Files that hold several rasters, or archives of them.
class Containers : public test::ExportFixture {
 protected:
  [[nodiscard]] Names names() const {
    const auto content = server_->content("localhost");
    Names out;
    for (const ServiceRecord& service : content->services) out.push_back(service.name);
    return out;
  }

  [[nodiscard]] Names problems() const {
    static_cast<void>(server_->content("localhost"));
    Names out;
    for (const LeftOut& problem : server_->problems()) out.push_back(problem.reason);
    return out;
  }

  [[nodiscard]] std::string path(const std::string& name) const { return (folder() / name).string(); }

  static GDALDriver& driver(const char* name) {
    auto* found = GetGDALDriverManager()->GetDriverByName(name);
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }

  // Variables of 8 by 6 numbers; none makes a file of a single row.
  void makeNetcdf(const std::string& name, const Names& variables) const {
    const DatasetPtr file(driver("netCDF").CreateMultiDimensional(path(name).c_str(), nullptr, nullptr));
    const auto root = file->GetRootGroup();
    const auto y = root->CreateDimension("y", "", "", 6);
    const auto x = root->CreateDimension("x", "", "", 8);
    const auto type = GDALExtendedDataType::Create(GDT_Int16);
    std::int16_t first = 100;
    for (const std::string& variable : variables) {
      const auto array = root->CreateMDArray(variable, {y, x}, type);
      std::vector<std::int16_t> values;
      for (std::int16_t i = 0; i < 48; ++i) values.push_back(static_cast<std::int16_t>(first + i));
      const GUInt64 start[] = {0, 0};
      const std::size_t count[] = {6, 8};
      ASSERT_TRUE(array->Write(start, count, nullptr, nullptr, type, values.data()));
      first = static_cast<std::int16_t>(first + 100);
    }
    if (variables.empty()) static_cast<void>(root->CreateMDArray("row", {x}, type));
  }

  void makeGeopackage(const std::string& name, const Names& tables) const {
    const DatasetPtr source = openRaster(makeNumbered("source.img").string());
    for (const std::string& table : tables) {
      CPLStringList options;
      options.SetNameValue("RASTER_TABLE", table.c_str());
      options.SetNameValue("APPEND_SUBDATASET", "YES");
      const DatasetPtr made(driver("GPKG").CreateCopy(path(name).c_str(), source.get(), FALSE, options.List(),
                                                      nullptr, nullptr));
      ASSERT_TRUE(made);
    }
    std::filesystem::remove(folder() / "source.img");
  }

  /// Of two pages, the second of which is the negative of the first. @returns the values of the first.
  std::vector<double> makePages(const std::string& name) const {
    const std::string made = makeNumbered(name).string();
    std::vector<double> values = test::valuesOf(made);
    const DatasetPtr first = openRaster(made);
    auto& memory = driver("MEM");
    const DatasetPtr second(memory.CreateCopy("", first.get(), FALSE, nullptr, nullptr, nullptr));
    std::vector<double> negative = values;
    for (double& value : negative) value = 255 - value;
    EXPECT_EQ(second->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 8, 6, negative.data(), 8, 6, GDT_Float64, 0,
                                                 0, nullptr),
              CE_None);
    CPLStringList options;
    options.SetNameValue("APPEND_SUBDATASET", "YES");
    const DatasetPtr appended(
        driver("GTiff").CreateCopy(made.c_str(), second.get(), FALSE, options.List(), nullptr, nullptr));
    EXPECT_TRUE(appended);
    return values;
  }

  struct Member {
    std::string name;
    std::string file;
  };

  void makeArchive(const std::string& name, const std::vector<Member>& members) const {
    const std::string archive = "/vsizip/" + path(name);
    auto* held = VSIFOpenL(archive.c_str(), "wb");
    ASSERT_NE(held, nullptr);
    for (const Member& member : members) {
      const std::string content = test::contentOf(path(member.file));
      auto* file = VSIFOpenL((archive + "/" + member.name).c_str(), "wb");
      ASSERT_NE(file, nullptr);
      EXPECT_EQ(VSIFWriteL(content.data(), 1, content.size(), file), content.size());
      VSIFCloseL(file);
    }
    VSIFCloseL(held);
  }

  /// Replaces bytes at a distance behind each place where a signature stands.
  void patch(const std::string& name, const std::string& signature, std::size_t behind,
             const std::string& bytes) const {
    std::string content = test::contentOf(path(name));
    for (auto at = content.find(signature); at != std::string::npos; at = content.find(signature, at + 1)) {
      content.replace(at + behind, bytes.size(), bytes);
    }
    writeText(name, content);
  }

  /// As an archive with a password says of its files.
  void markEncrypted(const std::string& name, const std::string& member) const {
    constexpr std::size_t fromName = 46 - 8;
    std::string content = test::contentOf(path(name));
    const std::size_t entry = content.rfind(member);
    ASSERT_EQ(content.compare(entry - 46, 4, "PK\x01\x02"), 0);
    content[entry - fromName] = static_cast<char>(content[entry - fromName] | 1);
    writeText(name, content);
  }

  /// Exports all of a service of 8 by 6 pixels. @returns its values; none when the export failed.
  [[nodiscard]] std::vector<double> exported(const std::string& name) const {
    test::GetImage wanted = request("Tiff", "contained.tif");
    wanted.extent = service("ImageService://localhost/" + name)->record().facts.envelope;
    EXPECT_EQ(exportFrom(name, wanted), "") << name;
    return test::valuesOf(wanted.fileName);
  }

  static std::vector<double> from(double first) {
    std::vector<double> values;
    for (int i = 0; i < 48; ++i) values.push_back(first + i);
    return values;
  }
};

TEST_F(Containers, AreFoldersOfTheirRasters) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  makeNumbered("a.tif");
  EXPECT_EQ(names(), (Names{"a", "climate/rain", "climate/temperature"}));
  EXPECT_EQ(problems(), Names{});
  const auto made = service("ImageService://localhost/climate/rain");
  EXPECT_EQ(made->record().facts.title, "rain");
  EXPECT_TRUE(test::holds(made->GetMetaData(""), "climate.nc"));
  EXPECT_FALSE(made->drawImage(made->record().facts.envelope, 8, 6).isEmpty());
}

TEST_F(Containers, GiveTheirRastersToExports) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  // Rows of a file without a place may be stored from the south.
  const auto rain = exported("climate/rain");
  ASSERT_EQ(rain.size(), 48U);
  EXPECT_EQ(*std::ranges::min_element(rain), 200);
  EXPECT_EQ(*std::ranges::max_element(rain), 247);
}

TEST_F(Containers, OfHdf5AreFoldersToo) {
  makeNetcdf("deep.h5", {"one", "two"});
  EXPECT_EQ(names(), (Names{"deep/one", "deep/two"}));
  EXPECT_EQ(exported("deep/two"), from(200));
}

TEST_F(Containers, OfGeopackagesAreFoldersOfTheirTables) {
  makeGeopackage("maps.gpkg", {"north", "south, 2"});
  EXPECT_EQ(names(), (Names{"maps/north", "maps/south_ 2"}));
  const auto values = test::valuesOf(makeNumbered("source.tif").string());
  const auto made = service("ImageService://localhost/maps/south, 2");
  EXPECT_EQ(made->record().facts.title, "south, 2");
  EXPECT_FALSE(made->drawImage({500000, 5149400, 500800, 5150000}, 8, 6).isEmpty());
}

TEST_F(Containers, ThatAreArchivesAreFoldersOfTheirFiles) {
  const auto a = test::valuesOf(makeNumbered("a.tif").string());
  makeNumbered("b.tif");
  writeText("notes.txt", "words");
  makeArchive("maps.zip", {{"north/a.tif", "a.tif"}, {"b, 2.tif", "b.tif"}, {"notes.txt", "notes.txt"}});
  for (const char* name : {"a.tif", "b.tif", "notes.txt"}) std::filesystem::remove(folder() / name);
  EXPECT_EQ(names(), (Names{"maps/b_ 2", "maps/north/a"}));
  EXPECT_EQ(problems(), Names{});
  EXPECT_EQ(exported("maps/north/a"), a);
  EXPECT_EQ(service("ImageService://localhost/maps/b, 2")->record().facts.title, "b, 2");
}

TEST_F(Containers, InArchivesAreFoldersWithinTheirs) {
  makeNetcdf("deep.h5", {"one", "two"});
  makeNumbered("a.tif");
  makeArchive("maps.zip", {{"deep.h5", "deep.h5"}, {"a.tif", "a.tif"}});
  for (const char* name : {"deep.h5", "a.tif"}) std::filesystem::remove(folder() / name);
  EXPECT_EQ(names(), (Names{"maps/a", "maps/deep/one", "maps/deep/two"}));
  EXPECT_EQ(exported("maps/deep/one"), from(100));
}

TEST_F(Containers, OfHdf4AreFoldersToo) {
  CPLStringList options;
  options.SetNameValue("RANK", "2");  // a data set of its own for each band
  {
    const DatasetPtr made(
        driver("HDF4Image").Create(path("old.hdf").c_str(), 8, 6, 2, GDT_Int16, options.List()));
    ASSERT_EQ(made->GetRasterBand(2)->Fill(7), CE_None);
  }
  EXPECT_EQ(names(), (Names{"old/0", "old/1"}));
  EXPECT_EQ(exported("old/1"), std::vector<double>(48, 7));
}

TEST_F(Containers, OfNetcdfInArchivesAreFoldersWithinTheirs) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  makeNumbered("a.tif");
  makeArchive("maps.zip", {{"climate.nc", "climate.nc"}, {"a.tif", "a.tif"}});
  for (const char* name : {"climate.nc", "a.tif"}) std::filesystem::remove(folder() / name);
  EXPECT_EQ(names(), (Names{"maps/a", "maps/climate/rain", "maps/climate/temperature"}));
  EXPECT_EQ(problems(), Names{});
}

TEST_F(Containers, ThatAreTiffsOfSeveralPagesAreFoldersOfThem) {
  const auto values = makePages("scan.tif");
  EXPECT_EQ(names(), (Names{"scan/1", "scan/2"}));
  EXPECT_EQ(problems(), Names{});
  EXPECT_EQ(service("ImageService://localhost/scan/2")->record().facts.title, "scan 2");
  EXPECT_EQ(exported("scan/1"), values);
  std::vector<double> second = values;
  for (double& value : second) value = 255 - value;
  EXPECT_EQ(exported("scan/2"), second);
}

TEST_F(Containers, ThatAreTiffsGiveTheirFirstPageWhereTheFileIsNamed) {
  makePages("scan.tif");
  EXPECT_EQ(service(path("scan.tif"))->record().facts.pages.size(), 2U);
  writeText("pages.VLDef",
            "<Vorlane><MosaicDefinition><Sources><Source><File>scan.tif</File></Source></Sources>"
            "</MosaicDefinition></Vorlane>");
  EXPECT_EQ(names(), (Names{"pages", "scan/1", "scan/2"}));
  EXPECT_EQ(exported("pages"), test::valuesOf(path("scan.tif")));
}

TEST_F(Containers, AreNoTiffsWithOverviewsAndAMask) {
  {
    const DatasetPtr file(GDALDataset::Open(makeNumbered("a.tif").c_str(), GDAL_OF_RASTER | GDAL_OF_UPDATE));
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", "YES");
    EXPECT_EQ(file->CreateMaskBand(GMF_PER_DATASET), CE_None);
    CPLSetThreadLocalConfigOption("GDAL_TIFF_INTERNAL_MASK", nullptr);
    const int halves = 2;
    EXPECT_EQ(file->BuildOverviews("NEAREST", 1, &halves, 0, nullptr, nullptr, nullptr), CE_None);
  }
  EXPECT_EQ(names(), Names{"a"});
}

TEST_F(Containers, InLargeNumbersAreReadWithoutAWordOnStandardError) {
  for (int file = 0; file < 24; ++file) {
    makeNetcdf(std::to_string(file) + ".nc", {"one", "two"});
    makeNetcdf(std::to_string(file) + ".h5", {"one", "two"});
    writeText(std::to_string(file) + "_broken.nc", "\x89HDF\r\n\x1a\n and no more");
  }
  testing::internal::CaptureStderr();
  EXPECT_EQ(names().size(), 96U);
  EXPECT_EQ(problems().size(), 24U);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Containers, OfOneRasterAreThatRaster) {
  makeNetcdf("climate.nc", {"rain"});
  makeGeopackage("maps.gpkg", {"north"});
  makeNumbered("a.tif");
  makeArchive("packed.zip", {{"north/a.tif", "a.tif"}});
  std::filesystem::remove(folder() / "a.tif");
  EXPECT_EQ(names(), (Names{"climate", "maps", "packed"}));
  EXPECT_EQ(service("ImageService://localhost/packed")->record().facts.title, "a");
  EXPECT_EQ(exported("packed").size(), 48U);
}

TEST_F(Containers, WithoutRastersAreNoProblem) {
  makeNetcdf("rows.nc", {});
  makeNetcdf("rows.h5", {});
  {
    const DatasetPtr made(driver("GPKG").Create(path("lines.gpkg").c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    ASSERT_NE(made->CreateLayer("roads"), nullptr);
  }
  writeText("notes.txt", "words");
  makeArchive("notes.zip", {{"notes.txt", "notes.txt"}});
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(problems(), Names{});
}

TEST_F(Containers, ThatAreDamagedAreProblems) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  std::filesystem::resize_file(folder() / "climate.nc", 100);
  writeText("cut.zip", "PK\x03\x04 and no more");
  EXPECT_EQ(names(), Names{});
  const Names told = problems();
  ASSERT_EQ(told.size(), 2U);
  EXPECT_TRUE(std::ranges::count(told, "the archive has no directory; it is damaged or cut off"));
}

TEST_F(Containers, ThatOnlyBearTheNameOfAnArchiveAreReadAsWhatTheyAre) {
  const auto values = test::valuesOf(makeNumbered("a.tif").string());
  std::filesystem::rename(folder() / "a.tif", folder() / "x.zip");
  makeNetcdf("climate.nc", {"temperature", "rain"});
  std::filesystem::rename(folder() / "climate.nc", folder() / "y.ZIP");
  EXPECT_EQ(names(), (Names{"x", "y/rain", "y/temperature"}));
  EXPECT_EQ(problems(), Names{});
  EXPECT_EQ(exported("x"), values);
  EXPECT_EQ(exported("y/rain").size(), 48U);
}

TEST_F(Containers, ThatAreArchivesInArchivesAreTold) {
  makeNumbered("a.tif");
  makeArchive("inner.zip", {{"a.tif", "a.tif"}});
  makeArchive("maps.zip", {{"a.tif", "a.tif"}, {"deep/inner.zip", "inner.zip"}});
  for (const char* name : {"a.tif", "inner.zip"}) std::filesystem::remove(folder() / name);
  EXPECT_EQ(names(), (Names{"maps/a"}));
  static_cast<void>(server_->content("localhost"));
  EXPECT_EQ(server_->problems(),
            (std::vector<LeftOut>{{path("maps.zip/deep/inner.zip"), "archives in archives are not opened"}}));
}

TEST_F(Containers, ThatAreEncryptedAreToldInPlainWords) {
  makeNumbered("a.tif");
  makeNumbered("b.tif");
  makeArchive("all.zip", {{"a.tif", "a.tif"}});
  makeArchive("some.zip", {{"north/a.tif", "a.tif"}, {"b.tif", "b.tif"}});
  for (const char* name : {"a.tif", "b.tif"}) std::filesystem::remove(folder() / name);
  markEncrypted("all.zip", "a.tif");
  markEncrypted("some.zip", "north/a.tif");
  EXPECT_EQ(names(), (Names{"some"}));
  EXPECT_EQ(problems(),
            (Names{"the archive is encrypted", "the archive holds encrypted files, which are left out"}));
}

TEST_F(Containers, ThatArePackedBadlyAreToldInPlainWords) {
  makeNumbered("a.tif");
  makeArchive("maps.zip", {{"a.tif", "a.tif"}});
  std::filesystem::remove(folder() / "a.tif");
  patch("maps.zip", "PK\x03\x04", 35, std::string(40, '\xFF'));
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(problems(), (Names{"its archive is damaged, or packed in a way that cannot be read"}));
}

TEST_F(Containers, KeepTheirExtensionBesideAFileOfTheirName) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  makeNumbered("climate.tif");
  EXPECT_EQ(names(), (Names{"climate.nc/rain", "climate.nc/temperature", "climate.tif"}));
  EXPECT_EQ(exported("climate.nc/rain").size(), 48U);
}

TEST_F(Containers, AreFoundByAPathThatGoesOnBehindThem) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  EXPECT_EQ(service(path("climate.nc/rain"))->record().facts.title, "rain");
  EXPECT_THROW((void)service(path("climate.nc/snow")), RuntimeFailure);
  EXPECT_THROW((void)service(path("climate.nc")), RuntimeFailure);
  EXPECT_THROW((void)service("ImageService://localhost/climate/snow"), RuntimeFailure);
  EXPECT_THROW((void)service("ImageService://localhost/climate"), RuntimeFailure);
}

TEST_F(Containers, AreFoundByANewServerToo) {
  std::filesystem::create_directories(folder() / "a folder, 1");
  makeNetcdf("a folder, 1/climate & co.nc", {"temperature", "rain"});
  ASSERT_EQ(names(), (Names{"a folder_ 1/climate _ co/rain", "a folder_ 1/climate _ co/temperature"}));
  for (const std::string name : {"a folder_ 1/climate _ co/rain", "a folder, 1/climate & co/rain"}) {
    CatalogueServer fresh(xml(), {folder(), {}});
    const auto entry = fresh.locate("ImageService://127.0.0.1/" + name);
    ASSERT_TRUE(entry) << name;
    EXPECT_EQ(entry->file, folder() / "a folder, 1/climate & co.nc/rain");
    EXPECT_TRUE(fresh.locate("ImageService://" + folder().string() + "/" + name)) << name;
  }
}

TEST_F(Containers, AreReadAgainWhenTheyHaveChanged) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  ASSERT_EQ(names().size(), 2U);
  std::filesystem::remove(folder() / "climate.nc");
  makeNetcdf("climate.nc", {"temperature", "rain", "snow"});
  std::filesystem::last_write_time(folder() / "climate.nc",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ(names().size(), 3U);
}

TEST_F(Containers, AreNotReplacedByAnExportOfTheirRasters) {
  makeNetcdf("climate.nc", {"temperature", "rain"});
  makeNumbered("a.tif");
  makeNumbered("b.tif");
  makeArchive("maps.zip", {{"a.tif", "a.tif"}, {"b.tif", "b.tif"}});
  for (const auto& [name, container] : {std::pair{"climate/rain", "climate.nc"}, {"maps/a", "maps.zip"}}) {
    const std::string before = test::contentOf(path(container));
    test::GetImage wanted = request("Tiff", "");
    wanted.extent = service(std::string("ImageService://localhost/") + name)->record().facts.envelope;
    wanted.fileName = path(container);
    EXPECT_TRUE(test::holds(exportFrom(name, wanted), "belongs to the service")) << name;
    EXPECT_EQ(test::contentOf(path(container)), before) << name;
  }
}

TEST_F(Containers, OfTooManyFilesAreTold) {
  std::string record("PK\x05\x06\0\0\0\0\xFF\xFF\xFF\xFF\0\0\0\0\0\0\0\0\0\0", 22);
  writeText("many.zip", record);
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(problems(), (Names{"the archive holds more than 10000 files"}));
}

// The directory of an archive as another program would write it: it claims what it does not hold.
std::string archiveThatClaims(std::uint32_t unpackedBytes, int files) {
  const auto bytes = [](std::uint64_t number, int count) {
    std::string text;
    for (int at = 0; at < count; ++at, number >>= 8U) text += static_cast<char>(number & 0xFFU);
    return text;
  };
  std::string directory;
  const std::string local = "PK\x03\x04" + bytes(20, 2) + bytes(0, 12) + bytes(0, 4) +
                            bytes(unpackedBytes, 4) + bytes(5, 2) + bytes(0, 2) + "0.txt";
  for (int file = 0; file < files; ++file) {
    directory += "PK\x01\x02" + bytes(20, 2) + bytes(20, 2) + bytes(0, 12) + bytes(0, 4) +
                 bytes(unpackedBytes, 4) + bytes(5, 2) + bytes(0, 16) + std::to_string(file) + ".txt";
  }
  const auto count = static_cast<std::uint32_t>(files);
  return local + directory + "PK\x05\x06" + bytes(0, 4) + bytes(count, 2) + bytes(count, 2) +
         bytes(static_cast<std::uint32_t>(directory.size()), 4) +
         bytes(static_cast<std::uint32_t>(local.size()), 4) + bytes(0, 2);
}

TEST_F(Containers, ThatUnpackToAMultipleOfTheirSizeAreTold) {
  constexpr std::uint32_t threeGigabytes = 3U << 30U;
  writeText("large.zip", archiveThatClaims(threeGigabytes, 2));
  writeText("small.zip", archiveThatClaims(threeGigabytes, 1));
  EXPECT_EQ(names(), Names{});
  EXPECT_EQ(problems(),
            Names{"the archive unpacks to 6 GB, more than a hundred times its size, and is not read"});
}

}  // namespace
}  // namespace vlclientui::client
