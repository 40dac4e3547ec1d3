#include "client/output/GetImageRequest.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace vlclientui::client {
namespace {

using Texts = std::vector<std::pair<std::string, std::string>>;

/// A request whose elements a test replaces one by one.
class GetImageRequests : public testing::Test {
 protected:
  static Texts usual() {
    return {{"Left", "10"},
            {"Bottom", "20"},
            {"Right", "30.5"},
            {"Top", "40"},
            {"Cols", "100"},
            {"Rows", "50"},
            {"Format", "Tiff"},
            {"CompressionMethod", "JPEG"},
            {"TileSize", "256"},
            {"CompressionQuality", "80"},
            {"FileName", "C:\\out\\a.Tif"}};
  }

  static std::string document(const Texts& texts) {
    std::string out = "<Vorlane><Client><GetImage>";
    for (const auto& [name, text] : texts) out += "<" + name + ">" + text + "</" + name + ">";
    return out + "</GetImage></Client></Vorlane>";
  }

  static Texts with(const std::string& name, const std::string& text) {
    Texts texts = usual();
    for (auto& each : texts) {
      if (each.first == name) each.second = text;
    }
    if (std::none_of(texts.begin(), texts.end(), [&](const auto& each) { return each.first == name; })) {
      texts.emplace_back(name, text);
    }
    return texts;
  }

  static Texts without(const std::string& name) {
    Texts texts = usual();
    std::erase_if(texts, [&](const auto& each) { return each.first == name; });
    return texts;
  }

  [[nodiscard]] GetImageRequest read(const Texts& texts) const {
    return readGetImageRequest(document(texts), xml_);
  }

  /// Why it is refused, or "(taken)".
  [[nodiscard]] std::string refusal(const Texts& texts) const {
    try {
      (void)read(texts);
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "(taken)";
  }

  platform::LibXmlService xml_{platform::PathTranslation("/nonexistent-home")};
};

TEST_F(GetImageRequests, AreReadWhole) {
  const GetImageRequest request = read(usual());
  EXPECT_EQ(request.grid.extent, (Bounds{10, 20, 30.5, 40}));
  EXPECT_EQ(request.grid.columns, 100);
  EXPECT_EQ(request.grid.rows, 50);
  EXPECT_EQ(request.format, "Tiff");
  EXPECT_EQ(request.compression, "JPEG");
  EXPECT_EQ(request.tileSize, 256);
  EXPECT_EQ(request.quality, 80);
  EXPECT_EQ(request.fileName, "C:\\out\\a.Tif");
  EXPECT_FALSE(request.createsWorldFile);
  EXPECT_FALSE(request.exportsMetadata);
  EXPECT_FALSE(request.metadata);
  EXPECT_TRUE(request.file.empty());
}

TEST_F(GetImageRequests, MayLackDigitsOnEitherSideOfThePoint) {
  EXPECT_EQ(read(with("Left", ".5")).grid.extent.xMin, 0.5);
  EXPECT_EQ(read(with("Left", "5.")).grid.extent.xMin, 5);
  EXPECT_EQ(read(with("Left", "-.5")).grid.extent.xMin, -0.5);
  EXPECT_EQ(read(with("Left", "-1e-3")).grid.extent.xMin, -0.001);
  EXPECT_EQ(read(with("Left", " 7 ")).grid.extent.xMin, 7);
}

TEST_F(GetImageRequests, RefuseWhatIsNoNumber) {
  for (const char* text : {"", "x", "1,5", "1 5", "0x10", "--1", "1e999", "nan", "inf", "1.5.5", "."}) {
    EXPECT_EQ(refusal(with("Left", text)),
              "The export request needs a number as Left, not \"" + std::string(text) + "\"");
  }
  EXPECT_EQ(refusal(without("Top")), "The export request needs a number as Top, not \"\"");
}

TEST_F(GetImageRequests, RefuseEdgesTheWrongWayRound) {
  EXPECT_EQ(refusal(with("Right", "10")), "The right edge of the export is not right of the left one");
  EXPECT_EQ(refusal(with("Right", "9")), "The right edge of the export is not right of the left one");
  EXPECT_EQ(refusal(with("Top", "20")), "The top edge of the export is not above the bottom one");
  EXPECT_EQ(refusal(with("Bottom", "50")), "The top edge of the export is not above the bottom one");
}

TEST_F(GetImageRequests, CountPixelsInWholeNumbersAboveZero) {
  EXPECT_EQ(read(with("Cols", "1")).grid.columns, 1);
  EXPECT_EQ(read(with("Cols", "12.0")).grid.columns, 12);
  EXPECT_EQ(read(with("Rows", "2147483647")).grid.rows, 2147483647);
  for (const char* text : {"0", "-1", "1.5", "2147483648", "", "many"}) {
    EXPECT_EQ(refusal(with("Rows", text)),
              "The export request needs a whole number above 0 as Rows, not \"" + std::string(text) + "\"");
  }
}

TEST_F(GetImageRequests, HaveNoTilesOrSomeOfWholeSteps) {
  EXPECT_EQ(read(with("TileSize", "None")).tileSize, 0);
  EXPECT_EQ(read(with("TileSize", "none")).tileSize, 0);
  EXPECT_EQ(read(with("TileSize", "")).tileSize, 0);
  EXPECT_EQ(read(without("TileSize")).tileSize, 0);
  EXPECT_EQ(read(with("TileSize", "16")).tileSize, 16);
  EXPECT_EQ(read(with("TileSize", "16384")).tileSize, 16384);
  for (const char* text : {"8", "100", "16400"}) {
    EXPECT_EQ(refusal(with("TileSize", text)),
              "The export request needs \"None\" or a multiple of 16 as TileSize, not \"" +
                  std::string(text) + "\"");
  }
  EXPECT_NE(refusal(with("TileSize", "all")), "(taken)");
}

TEST_F(GetImageRequests, HaveAQualityFromNothingToAHundred) {
  EXPECT_EQ(read(with("CompressionQuality", "0")).quality, 0);
  EXPECT_EQ(read(with("CompressionQuality", "100")).quality, 100);
  EXPECT_EQ(read(with("CompressionQuality", "79.6")).quality, 80);
  EXPECT_EQ(read(with("CompressionQuality", "")).quality, 100);
  EXPECT_EQ(read(without("CompressionQuality")).quality, 100);
  for (const char* text : {"-0.1", "100.1", "1000"}) {
    EXPECT_EQ(refusal(with("CompressionQuality", text)),
              "The export request needs a number from 0 to 100 as CompressionQuality, not \"" +
                  std::string(text) + "\"");
  }
}

TEST_F(GetImageRequests, SayYesByAWordOrANumber) {
  for (const char* text : {"True", "true", "TRUE", "1", "-1", " True "}) {
    EXPECT_TRUE(read(with("CreateWorldFile", text)).createsWorldFile) << text;
    EXPECT_TRUE(read(with("ExportMetadataXml", text)).exportsMetadata) << text;
  }
  for (const char* text : {"False", "0", "", "yes", "0.0"}) {
    EXPECT_FALSE(read(with("CreateWorldFile", text)).createsWorldFile) << text;
    EXPECT_FALSE(read(with("ExportMetadataXml", text)).exportsMetadata) << text;
  }
}

TEST_F(GetImageRequests, NeedTheNameOfAFileButNoFormat) {
  EXPECT_EQ(refusal(with("FileName", " ")), "The export request names no file");
  EXPECT_EQ(refusal(without("FileName")), "The export request names no file");
  EXPECT_EQ(read(without("Format")).format, "");
  EXPECT_EQ(read(without("CompressionMethod")).compression, "");
}

TEST_F(GetImageRequests, AreNoneInADocumentOfAnotherKind) {
  for (const char* text : {"", "no document", "<Vorlane/>", "<Vorlane><Client/></Vorlane>", "<GetImage/>"}) {
    EXPECT_THROW((void)readGetImageRequest(text, xml_), RuntimeFailure) << text;
  }
}

}  // namespace
}  // namespace vlclientui::client
