#include "CommandLine.h"

#include <gtest/gtest.h>

#include "HelpText.h"
#include "documents/ExportFormats.h"

namespace vlclientui::vlhost {
namespace {

template <class Parsed>
Parsed parsed(const std::vector<std::string>& arguments) {
  const Command command = parseCommandLine(arguments);
  const auto* const found = std::get_if<Parsed>(&command);
  EXPECT_NE(found, nullptr) << testing::PrintToString(arguments);
  return found == nullptr ? Parsed() : *found;
}

std::string reasonOf(const std::vector<std::string>& arguments) {
  return parsed<UsageError>(arguments).reason;
}

TEST(CommandLine, TakesAValueBehindAnOptionOrJoinedToIt) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"export", "a", "--cols", "5", "-o", "x.png"},
        {"export", "a", "--cols=5", "--output=x.png"}}) {
    const auto command = parsed<ExportCommand>(words);
    ASSERT_EQ(command.edits.size(), 2U);
    EXPECT_EQ(command.edits[0].text, "PNG");
    EXPECT_EQ(command.edits[1].control, "uiTxtCols");
    EXPECT_EQ(command.edits[1].text, "5");
    EXPECT_EQ(command.output, "x.png");
  }
}

TEST(CommandLine, TakesSeveralValuesJoinedToOneOption) {
  const auto command = parsed<ExportCommand>({"export", "a", "--extent=-1 2 -3 4", "-o", "x"});
  ASSERT_EQ(command.edits.size(), 4U);
  EXPECT_EQ(command.edits[0].text, "-1");
  EXPECT_EQ(command.edits[2].control, "uiTxtRight");
  EXPECT_EQ(command.edits[2].text, "-3");
}

TEST(CommandLine, TakesTheFirstOfSeveralValuesJoinedAndTheOthersBehindIt) {
  const auto command = parsed<ExportCommand>({"export", "a", "--pixel-size=1", "2", "-o", "x"});
  ASSERT_EQ(command.edits.size(), 2U);
  EXPECT_EQ(command.edits[1].text, "2");
}

TEST(CommandLine, RefusesMoreJoinedValuesThanAnOptionTakes) {
  EXPECT_EQ(reasonOf({"export", "a", "--pixel-size=1 2 3", "-o", "x"}),
            "'--pixel-size' takes no further value '3'");
}

TEST(CommandLine, SplitsAPropertyAtTheEqualSignOfItsOwn) {
  const auto command =
      parsed<PropertiesCommand>({"properties", "a", "--set=Filter=x=y", "--save=seen.VLRef"});
  ASSERT_EQ(command.edits.size(), 1U);
  EXPECT_EQ(command.edits[0].name, "Filter");
  EXPECT_EQ(command.edits[0].value, "x=y");
  EXPECT_EQ(command.file, "seen.VLRef");
}

TEST(CommandLine, RefusesAValueOfAnOptionThatTakesNone) {
  EXPECT_EQ(reasonOf({"services", "--json=yes"}), "'--json' takes no value");
  EXPECT_EQ(reasonOf({"export", "a", "--dry-run=1", "-o", "x"}), "'--dry-run' takes no value");
  EXPECT_EQ(reasonOf({"metadata", "a", "--service="}), "'--service' takes no value");
}

TEST(CommandLine, TakesALevelJoinedToItsOption) {
  const auto command = parsed<MetadataCommand>({"metadata", "a", "--level=Basic"});
  EXPECT_EQ(command.document, MetadataCommand::Document::ImageBasic);
}

TEST(CommandLine, KeepsWhatWasReadInTheWayThatIsAskedFor) {
  using client::Keeping;
  EXPECT_EQ(parsed<ExportCommand>({"export", "a", "-o", "x.tif"}).keeping, Keeping::Nothing);
  EXPECT_EQ(parsed<ExportCommand>({"export", "a", "--keep-partial", "-o", "x.tif"}).keeping, Keeping::Begin);
  EXPECT_EQ(parsed<ExportCommand>({"export", "a", "-o", "x.tif", "--resume"}).keeping, Keeping::GoOn);
  EXPECT_EQ(parsed<ExportCommand>({"export", "a", "-o", "x.tif", "--restart"}).keeping, Keeping::Anew);
  EXPECT_EQ(reasonOf({"export", "a", "--resume", "--restart", "-o", "x.tif"}),
            "of '--keep-partial', '--resume' and '--restart' only one can be given");
}

TEST(CommandLine, TellsAPlanAsJsonOfADryRunAlone) {
  EXPECT_EQ(parsed<ExportCommand>({"export", "a", "--dry-run", "--json", "-o", "x.tif"}).plan,
            PlanOutput::Json);
  EXPECT_EQ(reasonOf({"metadata", "a", "--json", "--save", "x.xml"}),
            "'--json' and '--save' do not go together");
  EXPECT_EQ(reasonOf({"run", "a.vlrun", "--pause", "soon"}), "'--pause' wants milliseconds from 0 to 60000");
  EXPECT_EQ(reasonOf({"run", "--show"}), "no file is named");
}

TEST(CommandLine, RefusesAnEmptyFile) {
  EXPECT_EQ(reasonOf({"export", "a", "--output="}), "no file behind '--output'");
  EXPECT_EQ(reasonOf({"metadata", "a", "--save="}), "no file behind '--save'");
}

TEST(CommandLine, TakesANameWithoutEndingAndLeavesTheFormatToTheWindow) {
  EXPECT_TRUE(parsed<ExportCommand>({"export", "a", "-o", "out.d/image"}).edits.empty());
  EXPECT_TRUE(parsed<ExportCommand>({"export", "a", "-o", "image."}).edits.empty());
}

TEST(CommandLine, RefusesANameThatNoRequestCanHold) {
  EXPECT_EQ(reasonOf({"export", "a", "-o", "one\ntwo.tif"}),
            "the name behind '-o' holds a control character");
  EXPECT_EQ(reasonOf({"export", "a", "-o", "gr\xFC\xDF.tif"}), "the name behind '-o' is no UTF-8 text");
}

TEST(CommandLine, TellsOfOneCommandAlone) {
  for (const char* const name : {"services", "export", "properties", "metadata"}) {
    EXPECT_EQ(parsed<HelpCommand>({name, "--help"}).topic, name);
    const std::string help = helpText(name);
    EXPECT_TRUE(help.starts_with(std::string("vlhost ") + name + " ")) << help;
    for (const char* const other : {"services", "export", "properties", "metadata"}) {
      const bool isTold = help.find(std::string("vlhost ") + other) != std::string::npos;
      EXPECT_EQ(isTold, std::string(name) == other) << help;
    }
  }
}

TEST(CommandLine, TellsEveryFormatInTheHelpOfExport) {
  const std::string help = helpText("export");
  for (const ExportFormat& format : exportFormats()) {
    EXPECT_NE(help.find(format.entry), std::string::npos) << format.entry;
  }
  EXPECT_NE(help.find(allEndings()), std::string::npos) << help;
}

TEST(CommandLine, TellsOfEveryCommandInTheHelpOfAll) {
  EXPECT_EQ(parsed<HelpCommand>({"--help"}).topic, "");
  const std::string help = helpText("");
  for (const char* const name : {"services", "export", "properties", "metadata"}) {
    EXPECT_NE(help.find(std::string("  vlhost ") + name), std::string::npos) << help;
  }
}

}  // namespace
}  // namespace vlclientui::vlhost
