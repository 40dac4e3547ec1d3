#include "client/raster/FileMetadata.h"

#include <algorithm>
#include <string>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/raster/XmpProperties.h"

namespace vlclientui::client {
namespace {

class MetadataOfFiles : public test::RasterFixture {
 protected:
  /// The text of an item, or "(none)".
  [[nodiscard]] std::string item(const std::filesystem::path& file, const std::string& section,
                                 const std::string& name) const {
    for (const MetadataSection& each : readFileMetadata(file, xml())) {
      if (each.name != section) continue;
      for (const auto& [itemName, text] : each.items) {
        if (itemName == name) return text;
      }
    }
    return "(none)";
  }

  [[nodiscard]] std::filesystem::path withItems(const std::string& name,
                                                std::function<void(GDALDataset&)> finish) const {
    test::RasterRecipe recipe;
    recipe.finish = std::move(finish);
    return makeRaster(name, recipe);
  }
};

TEST_F(MetadataOfFiles, TellWhatTheFileIs) {
  test::RasterRecipe recipe;
  recipe.bands = 3;
  recipe.type = GDT_UInt16;
  recipe.option = "COMPRESS=DEFLATE";
  const auto file = makeRaster("a b.tif", recipe);
  EXPECT_EQ(item(file, "File", "FileName"), "a b.tif");
  EXPECT_EQ(item(file, "File", "FileSize"), std::to_string(std::filesystem::file_size(file)));
  EXPECT_EQ(item(file, "File", "Columns"), "8");
  EXPECT_EQ(item(file, "File", "Rows"), "6");
  EXPECT_EQ(item(file, "File", "Bands"), "3");
  EXPECT_EQ(item(file, "File", "PixelType"), "UInt16");
  EXPECT_EQ(item(file, "File", "Compression"), "DEFLATE");
  EXPECT_EQ(item(file, "File", "NoData"), "(none)");
  EXPECT_EQ(item(file, "File", "Overviews"), "(none)");
}

TEST_F(MetadataOfFiles, TellNoDataAsANumberOrAWord) {
  const auto withNoData = [this](const std::string& name, GDALDataType type, double value) {
    test::RasterRecipe recipe;
    recipe.type = type;
    recipe.finish = [value](GDALDataset& d) { d.GetRasterBand(1)->SetNoDataValue(value); };
    return item(makeRaster(name, recipe), "File", "NoData");
  };
  EXPECT_EQ(withNoData("byte.tif", GDT_Byte, 255), "255");
  EXPECT_EQ(withNoData("float.tif", GDT_Float32, -9999.5), "-9999.5");
  EXPECT_EQ(withNoData("nan.tif", GDT_Float64, std::numeric_limits<double>::quiet_NaN()), "not a number");
}

TEST_F(MetadataOfFiles, TellALineForEachBand) {
  const auto file = withItems("a.tif", [](GDALDataset& d) {
    GDALRasterBand& band = *d.GetRasterBand(1);
    band.SetDescription("near infrared");
    band.SetUnitType("m");
    band.SetNoDataValue(7);
    band.SetMetadataItem("STATISTICS_MINIMUM", "1.5");
    band.SetMetadataItem("STATISTICS_MAXIMUM", "9");
  });
  EXPECT_EQ(item(file, "Bands", "Band_1"),
            "near infrared; shown as Gray; type Byte; unit m; no data 7; minimum 1.5; maximum 9");
  EXPECT_EQ(item(file, "Bands", "Band_2"), "(none)");
}

TEST_F(MetadataOfFiles, SortOrdinaryItemsFromThoseOfTheCamera) {
  const auto file = withItems("a.tif", [](GDALDataset& d) {
    d.SetMetadataItem("TIFFTAG_SOFTWARE", "by hand");
    d.SetMetadataItem("EXIF_Model", "box camera");
    d.SetMetadataItem("odd name!", "kept");
  });
  EXPECT_EQ(item(file, "Tags", "TIFFTAG_SOFTWARE"), "by hand");
  EXPECT_EQ(item(file, "Tags", "odd_name_"), "kept");
  EXPECT_EQ(item(file, "Exif", "Model"), "box camera");
  EXPECT_EQ(item(file, "Tags", "EXIF_Model"), "(none)");
}

TEST_F(MetadataOfFiles, TellTheEditorsPropertiesAndFurtherDomains) {
  const auto file = withItems("a.tif", [](GDALDataset& d) {
    const char* packet[] = {
        "<x><rdf:RDF xmlns:rdf='r' xmlns:dc='d'><rdf:Description dc:title='Valley'/></rdf:RDF></x>", nullptr};
    d.SetMetadata(const_cast<char**>(packet), "xml:XMP");
    d.SetMetadataItem("pilot", "somebody", "FLIGHT");
  });
  EXPECT_EQ(item(file, "Xmp", "dc_title"), "Valley");
  EXPECT_EQ(item(file, "Domains", "FLIGHT_pilot"), "somebody");
}

TEST_F(MetadataOfFiles, CutEndlessTextsAtAWholeCharacter) {
  std::string text(4095, 'x');
  text += "\xC3\xA9 and more";
  const auto file = withItems("a.tif", [&text](GDALDataset& d) { d.SetMetadataItem("LONG", text.c_str()); });
  EXPECT_EQ(item(file, "Tags", "LONG"), std::string(4095, 'x') + "\xE2\x80\xA6");
}

TEST_F(MetadataOfFiles, HaveNoSectionWithoutItemsAndNoneForNoRaster) {
  const FileMetadata metadata = readFileMetadata(makeRaster("a.tif"), xml());
  EXPECT_TRUE(std::ranges::none_of(metadata, [](const auto& each) { return each.items.empty(); }));
  EXPECT_TRUE(readFileMetadata(writeText("b.tif", "no raster"), xml()).empty());
  EXPECT_TRUE(readFileMetadata(folder() / "missing.tif", xml()).empty());
}

TEST(ElementNames, AreMadeOfAnyText) {
  EXPECT_EQ(elementName("Plain-1.2_x"), "Plain-1.2_x");
  EXPECT_EQ(elementName("with blank:colon"), "with_blank_colon");
  EXPECT_EQ(elementName("1st"), "_1st");
  EXPECT_EQ(elementName(""), "_");
  EXPECT_EQ(elementName("-x"), "_-x");
  EXPECT_EQ(elementName("\xC3\xA9"), "___");
}

TEST(ElementNames, AvoidThoseWithAMeaning) {
  EXPECT_EQ(elementName("xmlns"), "_xmlns");
  EXPECT_EQ(elementName("XMLthing"), "_XMLthing");
  EXPECT_EQ(elementName("X_DEF"), "_X_DEF");
  EXPECT_EQ(elementName("xfd_header"), "_xfd_header");
}

TEST(WrittenMetadata, HasAnElementForEachSectionAndItem) {
  std::string out = "<a>";
  writeMetadata(out, {{"File", {{"Name", "a<b"}, {"Size", "7"}}}, {"Tags", {{"T", "x"}}}});
  EXPECT_EQ(out, "<a><File><Name>a&lt;b</Name><Size>7</Size></File><Tags><T>x</T></Tags>");
}

class XmpPackets : public testing::Test {
 protected:
  [[nodiscard]] std::string properties(const std::string& inside) const {
    const std::string packet = "<x:xmpmeta xmlns:x='x'><rdf:RDF xmlns:rdf='r' xmlns:dc='d' xmlns:p='p'>" +
                               inside + "</rdf:RDF></x:xmpmeta>";
    std::string out;
    for (const auto& [name, text] : readXmpProperties(packet, xml_)) out += name + "=" + text + ";";
    return out;
  }

  platform::LibXmlService xml_{platform::PathTranslation("/nonexistent-home")};
};

TEST_F(XmpPackets, HoldPropertiesAsAttributesAndAsElements) {
  EXPECT_EQ(properties("<rdf:Description rdf:about='me' dc:title='t' p:n='1'><p:m>2</p:m></rdf:Description>"),
            "dc:title=t;p:n=1;p:m=2;");
}

TEST_F(XmpPackets, HoldListsAsOneText) {
  EXPECT_EQ(properties("<rdf:Description><dc:subject><rdf:Bag><rdf:li>a</rdf:li><rdf:li/><rdf:li>b</rdf:li>"
                       "</rdf:Bag></dc:subject></rdf:Description>"),
            "dc:subject=a, b;");
}

TEST_F(XmpPackets, HoldStructuresAsOneTextToo) {
  EXPECT_EQ(properties("<rdf:Description><p:place><rdf:Description><p:x>1</p:x><p:y>2</p:y>"
                       "</rdf:Description></p:place></rdf:Description>"),
            "p:place=1, 2;");
}

TEST_F(XmpPackets, MayDescribeInSeveralParts) {
  EXPECT_EQ(properties("<rdf:Description p:a='1'/><rdf:Description p:b='2'/>"), "p:a=1;p:b=2;");
}

TEST_F(XmpPackets, OfAnotherKindHoldNothing) {
  EXPECT_EQ(properties(""), "");
  EXPECT_TRUE(readXmpProperties("", xml_).empty());
  EXPECT_TRUE(readXmpProperties("no packet", xml_).empty());
  EXPECT_TRUE(readXmpProperties("<a><b/></a>", xml_).empty());
}

}  // namespace
}  // namespace vlclientui::client
