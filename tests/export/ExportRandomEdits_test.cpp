#include <array>
#include <cmath>
#include <random>
#include <set>

#include <gmock/gmock.h>

#include "documents/NumberText.h"
#include "export/ExportModel.h"
#include "support/ExportFixture.h"

namespace vlclientui::test {
namespace {

constexpr int editsPerWindow = 40;
// Three images in three locales: 100,800 edits in all.
constexpr int modelEdits = 11'200;

/// What the documents say in a comparison with the model; a limit of 0 is not told.
struct Image {
  int bands = 0;
  std::string left{};
  int maxColumns = 0;
  int maxRows = 0;
  bool inDegrees = false;
};

std::string limitText(int limit) { return limit == 0 ? std::string() : std::to_string(limit); }

/// Texts and fields as a person might choose them, the same in every run.
class Person {
 public:
  explicit Person(unsigned seed) : random_(seed) {}

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  /// A positive number with up to `decimals` digits behind the point.
  std::string size(const LocaleFormat& locale, int decimals) {
    const double unit = std::pow(10, below(decimals + 1));
    return doubleToText((1 + below(5'000'000)) / unit, locale);
  }

  /// Any text: numbers of all kinds, and texts that are none.
  std::string anything(const LocaleFormat& locale) {
    static const char* const odd[] = {"",     "0",      "0.0",       "-0",   "abc",  "  ",     "1.5",
                                      "1,5",  "-7",     "1.000.000", "1E3",  "1E-7", "1E300",  "-1E300",
                                      ".5",   "360",    "359.5",     " 12 ", "0,0",  "0.000",  "100.5",
                                      "-0.5", "99.5",   "1000",      "2.5",  "3.5",  "(5)",    "&H10",
                                      "1e16", "0.0005", "32768",     "+4",   "5-",   "12 345", "1..2"};
    if (below(3) == 0) return odd[static_cast<std::size_t>(below(std::size(odd)))];
    const std::string number = size(locale, 6);
    return below(6) == 0 ? "-" + number : number;
  }

  /// A number of any size up to what the sums of edges still hold, and down to where pictures show nothing.
  std::string ofAnySize(const LocaleFormat& locale) {
    return doubleToText((1 + below(5'000'000)) * std::pow(10, below(80) - 40), locale);
  }

  std::string field() {
    static const char* const fields[] = {"Left", "Top",  "Right", "Bottom", "Width",      "Height",
                                         "Cols", "Rows", "GSDX",  "GSDY",   "Compression"};
    return fields[static_cast<std::size_t>(below(std::size(fields)))];
  }

 private:
  std::mt19937 random_;
};

class ExportRandomEdits : public ExportFixture, public testing::WithParamInterface<LocaleFormat> {
 protected:
  ExportRandomEdits() { system->locale = GetParam(); }

  static TextBox& boxOf(ExportControl& control, const std::string& name) {
    return const_cast<TextBox&>(*ExportModel::boxesOf(control).at(name));
  }
  static std::map<std::string, std::string> textsOf(const ExportControl& control) {
    std::map<std::string, std::string> texts;
    for (const auto& [name, box] : ExportModel::boxesOf(control)) texts[name] = box->text();
    return texts;
  }
  double numberOf(const TextBox& box) const { return textToDouble(box.text(), GetParam()); }

  /// Everything that the model knows of the control, told as differences.
  void expectAgreement(const ExportModel& model, const ExportControl& control, const std::string& edit) {
    const ExportModel shown(control, GetParam());
    ASSERT_EQ(shown.text, model.text) << edit;
    ASSERT_EQ(shown.complaint, model.complaint) << edit;
    ASSERT_EQ(shown.toolTip, model.toolTip) << edit;
    ASSERT_EQ(shown.red, model.red) << edit;
    ASSERT_EQ(toolkit->messages().size(), static_cast<std::size_t>(model.messages)) << edit;
  }

  /// An image of two bytes per sample.
  void serve(const Image& image) {
    service->metadata =
        imageMetadata({.xMin = image.left, .bands = std::to_string(image.bands), .pixelType = "UINT16"});
    service->info = serviceInfo(
        {.xMin = image.left, .maxColumns = limitText(image.maxColumns), .maxRows = limitText(image.maxRows)});
  }

  ExportModel modelOf(const ExportControl& control, const Image& image) const {
    ExportModel model(control, GetParam());
    model.bandCount = image.bands;
    model.bytesPerPixel = 2.0 * image.bands;
    model.maxCols = image.maxColumns;
    model.maxRows = image.maxRows;
    model.messages = static_cast<int>(toolkit->messages().size());
    if (image.inDegrees) {
      model.extentForm = "###.000000000";
      model.pixelForm = "###.000000000000";
    }
    return model;
  }

  void compareWithModel(const Image& image, unsigned seed) {
    serve(image);
    int compared = 0;
    inWindows(modelEdits, seed, [&](Person& person, ExportControl& control) {
      ExportModel model = modelOf(control, image);
      for (int number = 0; number < editsPerWindow; ++number) {
        std::string field = person.field();
        while (!boxOf(control, field).enabled()) field = person.field();
        const std::string text = person.anything(GetParam());
        edit(control, boxOf(control, field), text);
        model.edit(field, text);
        expectAgreement(model, control, field + " := '" + text + "'");
        if (HasFatalFailure()) return;
        ++compared;
      }
    });
    if (HasFatalFailure()) return;
    EXPECT_EQ(compared, modelEdits);
  }

  /// Opens windows until `edits` have been made; each begins with a new window in a format of its own.
  void inWindows(int edits, unsigned seed, const std::function<void(Person&, ExportControl&)>& act) {
    Person person(seed);
    for (int made = 0; made < edits; made += editsPerWindow) {
      show([&](ExportDialogForm&, ExportControl& control) {
        control.FormatCombo.userSelects(static_cast<std::size_t>(person.below(6)));
        act(person, control);
      });
      if (HasFatalFailure()) return;
    }
  }
};

TEST_P(ExportRandomEdits, OfThreeBandsWithinLimitsAgreeWithThePlainModelBoxByBox) {
  compareWithModel({.bands = 3, .left = "1000", .maxColumns = 3000, .maxRows = 2000}, 2);
}

TEST_P(ExportRandomEdits, OfOneBandWithoutLimitsAgreeWithThePlainModelBoxByBox) {
  compareWithModel({.bands = 1, .left = "1000"}, 3);
}

TEST_P(ExportRandomEdits, InDegreesAgreeWithThePlainModelBoxByBox) {
  compareWithModel({.bands = 3, .left = "10", .maxColumns = 3000, .maxRows = 2000, .inDegrees = true}, 4);
}

TEST_P(ExportRandomEdits, MoveOnlyWhatMayMove) {
  const std::map<std::string, std::set<std::string>> mayMove{
      {"Left", {"Left", "Width", "GSDX", "MB"}},
      {"Right", {"Right", "Width", "GSDX", "MB"}},
      {"Top", {"Top", "Height", "GSDY", "MB"}},
      {"Bottom", {"Bottom", "Height", "GSDY", "MB"}},
      {"Width", {"Width", "Right", "GSDX", "MB"}},
      {"Height", {"Height", "Bottom", "GSDY", "MB"}},
      {"Cols", {"Cols", "GSDX", "MB"}},
      {"Rows", {"Rows", "GSDY", "MB"}},
      {"GSDX", {"GSDX", "GSDY", "Cols", "Rows", "Right", "Bottom", "Width", "Height", "MB"}},
      {"GSDY", {"GSDY", "Rows", "Bottom", "Height", "MB"}},
      {"Compression", {"Compression", "MB"}}};
  inWindows(400, 7, [&](Person& person, ExportControl& control) {
    for (int number = 0; number < editsPerWindow; ++number) {
      const std::string field = person.field();
      if (!boxOf(control, field).enabled()) continue;
      const bool counts = field == "Cols" || field == "Rows";
      const std::string text = counts ? std::to_string(1 + person.below(5000))
                                      : person.size(GetParam(), field == "Compression" ? 0 : 3);
      const auto before = textsOf(control);
      edit(control, boxOf(control, field), text);
      for (const auto& [name, now] : textsOf(control)) {
        if (mayMove.at(field).contains(name)) continue;
        ASSERT_EQ(now, before.at(name)) << field << " := " << text;
      }
    }
  });
}

TEST_P(ExportRandomEdits, KeepSizesInAgreementWithTheEdges) {
  inWindows(400, 8, [&](Person& person, ExportControl& control) {
    for (int number = 0; number < editsPerWindow; ++number) {
      const std::string field = person.field();
      if (!boxOf(control, field).enabled()) continue;
      edit(control, boxOf(control, field), person.size(GetParam(), 5));
      const double digitAndAHalf = 0.0015 + 1e-9;
      const double width = numberOf(control.uiTxtRight) - numberOf(control.uiTxtLeft);
      const double height = numberOf(control.uiTxtTop) - numberOf(control.uiTxtBottom);
      ASSERT_NEAR(numberOf(control.uiTxtWidth), width, digitAndAHalf) << field;
      ASSERT_NEAR(numberOf(control.uiTxtHeight), height, digitAndAHalf) << field;
    }
  });
}

TEST_P(ExportRandomEdits, ChangeNothingWhenTheBoxIsLeftAgain) {
  inWindows(400, 9, [&](Person& person, ExportControl& control) {
    for (int number = 0; number < editsPerWindow; ++number) {
      const std::string field = person.field();
      if (!boxOf(control, field).enabled()) continue;
      edit(control, boxOf(control, field), person.size(GetParam(), 3));
      const ExportModel before(control, GetParam());
      visit(control, boxOf(control, field));
      const ExportModel after(control, GetParam());
      ASSERT_EQ(after.text, before.text) << field;
      ASSERT_EQ(after.red, before.red) << field;
      ASSERT_EQ(after.complaint, before.complaint) << field;
    }
  });
}

TEST_P(ExportRandomEdits, ShowOnlyTextsThatReadAsNumbers) {
  inWindows(400, 10, [&](Person& person, ExportControl& control) {
    for (int number = 0; number < editsPerWindow; ++number) {
      const std::string field = person.field();
      edit(control, boxOf(control, field), person.size(GetParam(), 6));
      for (const auto& [name, text] : textsOf(control)) {
        ASSERT_TRUE(isNumeric(text, GetParam())) << name << " shows '" << text << "' after " << field;
      }
    }
  });
}

TEST_P(ExportRandomEdits, OfAnySizeShowOnlyTextsThatReadAsNumbers) {
  inWindows(1200, 11, [&](Person& person, ExportControl& control) {
    for (int number = 0; number < editsPerWindow; ++number) {
      const std::string field = person.field();
      edit(control, boxOf(control, field), person.ofAnySize(GetParam()));
      for (const auto& [name, text] : textsOf(control)) {
        ASSERT_TRUE(isNumeric(text, GetParam())) << name << " shows '" << text << "' after " << field;
      }
    }
  });
}

std::string localeName(const testing::TestParamInfo<LocaleFormat>& info) {
  return std::array{"enUS", "deDE", "frFR"}[info.index];
}

INSTANTIATE_TEST_SUITE_P(Locales, ExportRandomEdits,
                         testing::Values(LocaleFormat{}, germanFormat(), frenchFormat()), localeName);

}  // namespace
}  // namespace vlclientui::test
