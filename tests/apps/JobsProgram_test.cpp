// vlhost as a program that runs jobs.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "support/TemporaryDataHome.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr const char* geoid = "ImageService://127.0.0.1/World/EGM96_Geoid";

struct JobsRun {
  int code = -1;
  std::string output;
  std::string errors;
};

class JobsProgram : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory(path("bin"));
    fs::create_symlink(VL_VLHOST, path("bin/vlhost"));
  }
  [[nodiscard]] fs::path path(const std::string& name) const { return folder_.path() / name; }
  [[nodiscard]] std::string read(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(path(name), std::ios::binary).rdbuf();
    return text.str();
  }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
  }
  /// A command of the shell, in a folder of its own.
  [[nodiscard]] JobsRun run(const std::string& command) const {
    write("script", "cd '" + folder_.path().string() +
                        "'\nexport PATH=\"$PWD/bin:$PATH\" HOME=\"$PWD\" XDG_DATA_HOME=\"$PWD/data\""
                        "\nexport VLCLIENTUI_HOME='" +
                        sourceFolder() + "' VLCLIENTUI_CATALOGUE='" + samplesFolder() + "'\n" + command +
                        "\n");
    const std::string shell = "sh '" + path("script").string() + "' >'" + path("stdout").string() + "' 2>'" +
                              path("stderr").string() + "'";
    const int status = std::system(shell.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("stdout"), read("stderr")};
  }
  [[nodiscard]] std::string job(const std::string& file, const std::string& reference = geoid) const {
    return "<VLJob Version='1'><Service Reference='" + reference +
           "'/><Extent Left='-10' Bottom='35' Right='30' Top='60'/><Grid Columns='40' Rows='25'/>"
           "<Format Name='Tiff'/><File Path='" +
           file + "'/></VLJob>";
  }
  /// Jobs a, b and c; the middle one has no service.
  void writeThree() const {
    write("a.VLJob", job("a.tif"));
    write("b.VLJob", job("b.tif", "ImageService://127.0.0.1/Gone"));
    write("c.VLJob", job("c.tif"));
  }

  TemporaryFolder folder_;
};

TEST_F(JobsProgram, MakesTheImageOfAnExportAgain) {
  const JobsRun first = run("vlhost export " + std::string(geoid) +
                            " --cols 90 --rows 45 --format TIFF-LZ77 --metadata --save-job a.VLJob -o a.Tif");
  ASSERT_EQ(first.code, 0) << first.errors;
  EXPECT_EQ(run("xmllint --noout --schema '" + sourceFolder() + "/definitions/job.xsd' a.VLJob").code, 0);
  ASSERT_EQ(run("vlhost export --job a.VLJob -o again.Tif").code, 0);
  ASSERT_EQ(run("vlhost export --job=a.Tif.xml -o third.Tif").code, 0);
  EXPECT_FALSE(read("a.Tif").empty());
  EXPECT_TRUE(read("a.Tif") == read("again.Tif"));
  EXPECT_TRUE(read("a.Tif") == read("third.Tif"));
}

TEST_F(JobsProgram, AreGivenByADryRunAsWell) {
  const JobsRun dry =
      run("vlhost export " + std::string(geoid) + " --cols 90 --dry-run --save-job a.VLJob -o a.Tif");
  ASSERT_EQ(dry.code, 0) << dry.errors;
  EXPECT_FALSE(fs::exists(path("a.Tif")));
  EXPECT_THAT(dry.output, testing::EndsWith(read("a.VLJob")));
  const JobsRun plan = run("vlhost export --job a.VLJob --dry-run");
  EXPECT_EQ(plan.code, 0) << plan.errors;
  EXPECT_THAT(plan.output, HasSubstr("To write: about "));
  EXPECT_THAT(plan.output, testing::Not(HasSubstr("about 0.0 MB"))) << "small files are told in KB";
  EXPECT_FALSE(fs::exists(path("a.Tif")));
}

TEST_F(JobsProgram, StopAtTheFirstFailureAndTellHowManyAreLeft) {
  writeThree();
  const JobsRun ran = run("vlhost export --job a.VLJob b.VLJob c.VLJob");
  EXPECT_EQ(ran.code, 1);
  EXPECT_THAT(ran.output, testing::EndsWith("3 jobs: 1 written, 1 failed, 1 not run\n"));
  EXPECT_THAT(ran.errors, HasSubstr("vlhost: b.VLJob: "));
  EXPECT_TRUE(fs::exists(path("a.tif")));
  EXPECT_FALSE(fs::exists(path("c.tif")));
}

TEST_F(JobsProgram, GoOnWhereThatIsAskedFor) {
  writeThree();
  const JobsRun ran = run("vlhost export --keep-going --job a.VLJob b.VLJob c.VLJob");
  EXPECT_EQ(ran.code, 1);
  EXPECT_THAT(ran.output, testing::EndsWith("3 jobs: 2 written, 1 failed\n"));
  EXPECT_TRUE(read("a.tif") == read("c.tif"));
}

TEST_F(JobsProgram, RunNoneWhereOneMakesNoSense) {
  write("a.VLJob", job("a.tif"));
  write("b.VLJob", "<VLJob/>");
  write("c.VLJob", job("./a.tif"));
  const JobsRun ran = run("vlhost export --job a.VLJob b.VLJob c.VLJob");
  EXPECT_EQ(ran.code, 3);
  EXPECT_THAT(ran.errors, HasSubstr("b.VLJob' is no job: the VLJob tells no Version\n"));
  EXPECT_THAT(ran.errors, HasSubstr("'c.VLJob' writes the same file as 'a.VLJob'\n"));
  EXPECT_FALSE(fs::exists(path("a.tif")));
  EXPECT_EQ(run("vlhost export --keep-going --job a.VLJob b.VLJob").code, 3);
  EXPECT_TRUE(fs::exists(path("a.tif")));
}

TEST_F(JobsProgram, GoOnWithAListThatWasInterrupted) {
  writeThree();
  ASSERT_EQ(run("vlhost export --job a.VLJob b.VLJob c.VLJob --log done").code, 1);
  write("b.VLJob", job("b.tif"));
  write("done", read("done") + "{\"file\": \"" + path("c.tif").string());
  const JobsRun rest = run("vlhost export --job a.VLJob b.VLJob c.VLJob --log done --resume");
  EXPECT_EQ(rest.code, 0) << rest.errors;
  EXPECT_THAT(rest.output, testing::EndsWith("3 jobs: 2 written, 1 skipped\n"));
  write("a.VLJob", job("a.tif").replace(job("a.tif").find("'40'"), 4, "'41'"));
  fs::remove(path("b.tif"));
  const JobsRun changed = run("vlhost export --job a.VLJob b.VLJob c.VLJob --log done --resume");
  EXPECT_THAT(changed.output, testing::EndsWith("3 jobs: 2 written, 1 skipped\n"));
}

TEST_F(JobsProgram, RunAgainWhereTheirRastersHaveChanged) {
  const auto writeRaster = [this](const std::string& method) {
    return run("vlhost properties " + std::string(geoid) + " --set Resampling=" + method +
               " --save a.VLRef && vlhost export a.VLRef --cols 77 --rows 33 -o raster.Tif");
  };
  ASSERT_EQ(writeRaster("Bilinear").code, 0);
  const std::string raster = path("raster.Tif").string();
  write("a.VLJob", job("a.tif", raster));
  write("b.VLJob", job("b.tif"));
  const std::string list = "vlhost export --job a.VLJob b.VLJob --log done --resume";
  EXPECT_THAT(run(list).output, testing::EndsWith("2 jobs: 2 written\n"));
  EXPECT_THAT(run(list).output, testing::EndsWith("2 jobs: 2 skipped\n"));
  const std::string before = read("a.tif");
  fs::remove(path("raster.Tif"));
  ASSERT_EQ(writeRaster("Nearest").code, 0);
  EXPECT_THAT(run(list).output, testing::EndsWith("2 jobs: 1 written, 1 skipped\n"));
  EXPECT_TRUE(read("a.tif") != before);
  fs::remove(path("raster.Tif"));
  const JobsRun gone = run(list);
  EXPECT_EQ(gone.code, 1) << "a raster that has gone is told of";
}

TEST_F(JobsProgram, LeaveNoFolderBehindWhereNothingIsWritten) {
  const std::string whole = job("new/deep/a.tif");
  std::string refused = whole;
  write("a.VLJob", refused.replace(refused.find("'Tiff'"), 6, "'JPEG'"));
  EXPECT_EQ(run("vlhost export --job a.VLJob").code, 1) << "its pixels are no colors";
  EXPECT_FALSE(fs::exists(path("new")));
  write("a.VLJob", whole);
  EXPECT_EQ(run("vlhost export --job a.VLJob").code, 0);
  EXPECT_TRUE(fs::exists(path("new/deep/a.tif")));
}

TEST_F(JobsProgram, GiveABatchQueueItsArrayAsTheDocumentTells) {
  std::ifstream page(sourceFolder() + "/docs/jobs.md");
  std::string script;
  for (std::string line; std::getline(page, line);) {
    const bool isScript = line.starts_with("    #!/bin/sh") || (!script.empty() && line.starts_with("    "));
    if (isScript) script += line.substr(4) + "\n";
    if (!isScript && !script.empty()) break;
  }
  ASSERT_THAT(script, HasSubstr("#SBATCH --array=1-500%20"));
  for (std::size_t at = script.find("/data/jobs"); at != std::string::npos; at = script.find("/data/jobs"))
    script.replace(at, 10, folder_.path().string());
  write("task.sh", script);
  write("list.txt", "one.VLJob\ntwo words.VLJob\ngone.VLJob\n");
  write("one.VLJob", job("one.tif"));
  write("two words.VLJob", job("two words.tif"));
  // A queue starts the script once for each task of the array.
  write("bin/sbatch",
        "#!/bin/sh\nfor task in 1 2 3; do SLURM_ARRAY_TASK_ID=$task sh \"$1\" || echo \"$task: $?\"; done\n");
  const JobsRun ran = run("chmod +x bin/sbatch; sh -n task.sh && sbatch task.sh");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_THAT(ran.output, testing::EndsWith("3: 3\n"))
      << "the exit code is the job's, here of one that is not there";
  EXPECT_FALSE(read("one.tif").empty());
  EXPECT_TRUE(read("one.tif") == read("two words.tif"));
}

TEST_F(JobsProgram, KeepTheLineBehindOneThatWasCutOff) {
  for (const char* const name : {"a", "b", "c"})
    write(std::string(name) + ".VLJob", job(std::string(name) + ".tif"));
  write("done", "{\"file\": \"" + path("c.tif").string());
  const std::string list = "vlhost export --job a.VLJob b.VLJob c.VLJob --log done --resume";
  EXPECT_THAT(run(list).output, testing::EndsWith("3 jobs: 3 written\n"));
  EXPECT_THAT(run(list).output, testing::EndsWith("3 jobs: 3 skipped\n"));
}

TEST_F(JobsProgram, ExportNothingWhereTheirLogCannotBeUsed) {
  write("a.VLJob", job("a.tif"));
  fs::create_directory(path("folder"));
  for (const char* const log : {"folder", "/nowhere/at/all"}) {
    const JobsRun ran = run("vlhost export --job a.VLJob --log " + std::string(log));
    EXPECT_EQ(ran.code, 1) << log;
    EXPECT_THAT(ran.errors, testing::AllOf(HasSubstr("the log '"), HasSubstr("cannot be "))) << log;
  }
  EXPECT_FALSE(fs::exists(path("a.tif")));
}

TEST_F(JobsProgram, HaveTheirPlansAsJsonWithoutSecrets) {
  write("a.VLJob", job("a.tif", "ImageService://ann:pw@127.0.0.1/World/EGM96_Geoid"));
  const JobsRun ran = run("vlhost export --job a.VLJob --dry-run --json --log done");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_THAT(ran.output,
              testing::AllOf(HasSubstr("\"plan\": {"), HasSubstr("\"bytesToWrite\": "),
                             HasSubstr("ImageService://127.0.0.1/World"), Not(HasSubstr("ann:pw"))));
  EXPECT_FALSE(fs::exists(path("done")));
}

TEST_F(JobsProgram, RefuseWhatAJobAlreadySays) {
  EXPECT_EQ(run("vlhost export --job a.VLJob --cols 3").code, 2);
  EXPECT_EQ(run("vlhost export --job a.VLJob b.VLJob -o c.tif").code, 2);
  EXPECT_EQ(run("vlhost export --job").code, 2);
  EXPECT_EQ(run("vlhost export --job nowhere.VLJob").code, 3);
}

TEST_F(JobsProgram, AreSpreadOverCoresByAnotherRunner) {
  for (int i = 0; i < 4; ++i)
    write("j" + std::to_string(i) + ".VLJob", job("j" + std::to_string(i) + ".tif"));
  write("broken.VLJob", "<VLJob/>");
  const std::string parallel =
      "parallel --will-cite --jobs 2 --joblog runs vlhost export --job {} ::: *.VLJob";
  const JobsRun ran = run(parallel);
  EXPECT_EQ(ran.code, 1) << ran.errors;
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(read("j" + std::to_string(i) + ".tif") == read("j0.tif")) << i;
  EXPECT_FALSE(read("j0.tif").empty());
  write("broken.VLJob", job("mended.tif"));
  const JobsRun again = run(parallel.substr(0, 9) + "--resume-failed " + parallel.substr(9));
  EXPECT_EQ(again.code, 0) << again.errors;
  EXPECT_EQ(again.output, "wrote " + path("mended.tif").string() + "\n");
}

/// Files of operations.
class RunProgram : public JobsProgram {
 protected:
  void writeRun(const std::string& lines) const {
    write("a.vlrun", "vlrun 1\nopen export " + std::string(geoid) + "\n" + lines);
  }
};

TEST_F(RunProgram, ExportsAsAPersonWould) {
  writeRun(
      "set uiTxtCols 90\nset uiTxtRows 45\npath uiTxtFileName a.tif\nread uiTxtMB\npress Command1\n"
      "expect result <Cols>90</Cols>\n");
  const JobsRun ran = run("vlhost run a.vlrun");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_THAT(ran.output, testing::StartsWith("uiTxtMB: "));
  ASSERT_EQ(run("vlhost export " + std::string(geoid) + " --cols 90 --rows 45 -o b.Tif").code, 0);
  EXPECT_FALSE(read("a.Tif").empty());
  EXPECT_TRUE(read("a.Tif") == read("b.Tif"));
}

TEST_F(RunProgram, PicksServicesOfAList) {
  write("a.vlrun",
        "vlrun 1\nopen services\nopenrow World\nrow EGM96_Geoid\npress SelectButton\nread ListBox.entries\n"
        "press uibtnok\nexpect result World/EGM96_Geoid\n");
  const JobsRun ran = run("vlhost run a.vlrun");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, "ListBox.entries: " + std::string(geoid) + "\n");
}

TEST_F(RunProgram, BeginsFromTheServersThatItsFirstLineTells) {
  write("a.vlrun",
        "vlrun 1\nopen services servers \"nowhere.example\\n127.0.0.1\"\nread uiTxtBoxServerName.entries\n"
        "choose uiTxtBoxServerName 127.0.0.1\nopenrow World\nopenrow EGM96_Geoid\n"
        "press uibtnok\nexpect result World/EGM96_Geoid\n");
  const JobsRun ran = run("vlhost run a.vlrun");
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, "uiTxtBoxServerName.entries: nowhere.example\n127.0.0.1\n");
}

TEST_F(RunProgram, EndsWithLineWindowAndControlInMemoryAndOnRealWindows) {
  writeRun("set uiTxtCols wide\nset uiTxtRows 4\n");
  for (const char* const windows : {"", " --show --pause 1"}) {
    const JobsRun ran = run("QT_QPA_PLATFORM=offscreen vlhost run a.vlrun" + std::string(windows));
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.errors,
                HasSubstr("vlhost: a.vlrun: line 4: window ExportDialogForm, set uiTxtRows: a message came "
                          "up that no 'answer' follows: Cannot enter characters\n"));
  }
}

TEST_F(RunProgram, TellsThatThereIsNoDisplay) {
  writeRun("close\n");
  const JobsRun ran = run("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM vlhost run a.vlrun --show");
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.errors, "vlhost: there is no display to show windows on\n");
}

TEST_F(RunProgram, TellsThatADisplayIsDead) {
  writeRun("close\n");
  const JobsRun x = run("env -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM DISPLAY=:9753 vlhost run a.vlrun --show");
  EXPECT_EQ(x.code, 1);
  EXPECT_EQ(x.errors, "vlhost: the display ':9753' cannot be reached\n");
  const JobsRun wayland =
      run("env -u DISPLAY -u QT_QPA_PLATFORM XDG_RUNTIME_DIR=\"$PWD\" WAYLAND_DISPLAY=gone vlhost run "
          "a.vlrun --show");
  EXPECT_EQ(wayland.code, 1);
  EXPECT_EQ(wayland.errors, "vlhost: the display 'gone' cannot be reached\n");
}

TEST_F(RunProgram, PrintsNoSecretsAndNothingThatSteersATerminal) {
  writeRun(
      "set uiTxtFileName \"/a\033c\\nhttp://ann:pw@host/b\"\nread uiTxtFileName\nexpect uiTxtFileName a\n");
  const JobsRun text = run("vlhost run a.vlrun");
  EXPECT_THAT(text.output, HasSubstr("/a?c\nhttp://host/b\n"));
  const JobsRun json = run("vlhost run a.vlrun --json");
  EXPECT_THAT(json.output, testing::AllOf(HasSubstr("\"problem\": "), Not(HasSubstr("ann:pw"))));
}

TEST_F(RunProgram, ExportsAgainOverItsOwnFile) {
  writeRun(
      "set uiTxtCols 90\nset uiTxtRows 45\npath uiTxtFileName a.tif\npress Command1\n"
      "mayanswer Ok \"already exists\"\nexpect result <Cols>90</Cols>\n");
  for (int i = 0; i < 2; ++i) {
    const JobsRun ran = run("vlhost run a.vlrun");
    EXPECT_EQ(ran.code, 0) << i << ran.errors;
  }
}

TEST_F(RunProgram, DoesNothingWhereTheFileMakesNoSense) {
  writeRun("path uiTxtFileName a.tif\npress Command1\nclick it\n");
  const JobsRun ran = run("vlhost run a.vlrun");
  EXPECT_EQ(ran.code, 3);
  EXPECT_EQ(ran.errors, "vlhost: a.vlrun: line 5: 'click' is unknown\n");
  EXPECT_FALSE(fs::exists(path("a.Tif")));
  EXPECT_EQ(run("vlhost run nowhere.vlrun").code, 3);
  EXPECT_THAT(run("vlhost run nowhere.vlrun --json").output, HasSubstr("\"problem\": "));
}

TEST_F(RunProgram, HasColorsWhereThatIsAskedForAlone) {
  EXPECT_THAT(run("CLICOLOR_FORCE=1 vlhost run nowhere.vlrun").errors, HasSubstr("\033["));
  EXPECT_THAT(run("CLICOLOR_FORCE=1 NO_COLOR=1 vlhost run nowhere.vlrun").errors, Not(HasSubstr("\033[")));
  EXPECT_THAT(run("vlhost run nowhere.vlrun").errors, Not(HasSubstr("\033[")));
}

}  // namespace
}  // namespace vlclientui::test
