#include <csignal>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "client/ExportFixture.h"
#include "client/ImageExport.h"

namespace vlclientui::client {
namespace {

using test::contentOf;
using test::GetImage;
using test::holds;

class ExportFaults : public test::ExportFixture {};

TEST_F(ExportFaults, SourceIsNeverItsOwnTarget) {
  const auto source = makeNumbered("a.tif").string();
  const std::string before = contentOf(source);
  GetImage wanted = request("Tiff", "");
  wanted.fileName = source;
  EXPECT_TRUE(holds(exportFrom("a", wanted), "source of the service"));
  EXPECT_EQ(contentOf(source), before);
}

TEST_F(ExportFaults, CancelLeavesTheFormerFileAndNothingElse) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    writeText("out/former", "former");
    const auto made = service("ImageService://localhost/slope");
    double last = -1;
    int calls = 0;
    made->setProgress([&](double share) {
      EXPECT_GE(share, last);
      EXPECT_LE(share, 1);
      last = share;
      return ++calls < 1;
    });
    made->ExportProperties(wholeSlope(format, "former").document());
    EXPECT_FALSE(made->ExportImage()) << format;
    EXPECT_TRUE(holds(made->status(), "cancelled")) << made->status();
    EXPECT_EQ(contentOf(out("former")), "former");
    EXPECT_EQ(outputs(), (std::vector<std::string>{"former"})) << format;
  }
}

TEST_F(ExportFaults, CancelInTheMiddleLeavesNothingEither) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    writeText("out/former", "former");
    const auto made = service("ImageService://localhost/slope");
    double last = 0;
    made->setProgress([&](double share) {
      last = share;
      return share < 0.3;
    });
    GetImage wanted = wholeSlope(format, "former");
    wanted.columns = 4000;
    wanted.rows = 3000;
    made->ExportProperties(wanted.document());
    EXPECT_FALSE(made->ExportImage()) << format;
    EXPECT_LT(last, 1) << format;
    EXPECT_TRUE(holds(made->status(), "cancelled")) << made->status();
    EXPECT_EQ(contentOf(out("former")), "former");
    EXPECT_EQ(outputs(), (std::vector<std::string>{"former"})) << format;
  }
}

TEST_F(ExportFaults, KilledProcessLeavesTheFormerFileAndTheNextExportCleansUp) {
  makeSlope();
  writeText("out/a.Tif", "former");
  const pid_t child = fork();
  if (child == 0) {
    const auto made = service("ImageService://localhost/slope");
    made->setProgress([](double) -> bool {
      kill(getpid(), SIGKILL);
      return true;
    });
    made->ExportProperties(wholeSlope("Tiff", "a.Tif").document());
    _exit(made->ExportImage() ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(contentOf(out("a.Tif")), "former");
  EXPECT_EQ(outputs().size(), 2U);
  ASSERT_EQ(exportFrom("slope", wholeSlope("Tiff", "a.Tif")), "");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.Tif"}));
}

TEST_F(ExportFaults, ProgressRunsToItsEnd) {
  makeSlope();
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("PNG"), std::string("JPEG2000")}) {
    const auto made = service("ImageService://localhost/slope");
    double last = -1;
    made->setProgress([&](double share) {
      last = share;
      return true;
    });
    made->ExportProperties(wholeSlope(format, "a." + format).document());
    EXPECT_TRUE(made->ExportImage());
    EXPECT_EQ(last, 1);
  }
}

TEST_F(ExportFaults, FailedWriteLeavesTheFormerFileAndNothingElse) {
  makeSlope();
  writeText("out/former", "former");
  rlimit usual{};
  getrlimit(RLIMIT_FSIZE, &usual);
  auto* handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{20000, usual.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const std::string message = exportFrom("slope", wholeSlope("Tiff", "former"));
  setrlimit(RLIMIT_FSIZE, &usual);
  std::signal(SIGXFSZ, handler);
  EXPECT_TRUE(holds(message, "could not be written")) << message;
  EXPECT_EQ(contentOf(out("former")), "former");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"former"}));
}

TEST_F(ExportFaults, SuccessReplacesTheFormerFileAndWhatDescribedIt) {
  const auto source = makeNumbered("a.tif").string();
  writeText("out/a.Tif", "former");
  writeText("out/a.Tif.aux.xml", "<PAMDataset><SRS>LOCAL_CS[\"wrong\"]</SRS></PAMDataset>");
  ASSERT_EQ(exportFrom("a", request("Tiff", "a.Tif")), "");
  EXPECT_EQ(test::valuesOf(out("a.Tif")), test::valuesOf(source));
  EXPECT_EQ(outputs(), (std::vector<std::string>{"a.Tif"}));
}

TEST_F(ExportFaults, FolderThatCannotBeWrittenIsToldOf) {
  makeNumbered("a.tif");
  GetImage wanted;
  wanted.fileName = "/proc/a.Tif";
  EXPECT_TRUE(holds(exportFrom("a", wanted), "/proc"));
  wanted.fileName = (folder() / "none" / "a.Tif").string();
  EXPECT_TRUE(holds(exportFrom("a", wanted), "no such folder"));
  wanted.fileName = (folder() / "out").string();
  EXPECT_TRUE(holds(exportFrom("a", wanted), "folder of this name"));
}

TEST_F(ExportFaults, SourceThatWentAwayIsNamed) {
  const auto source = makeNumbered("a.tif");
  const auto made = service("ImageService://localhost/a");
  std::filesystem::remove(source);
  made->ExportProperties(request("Tiff", "a.Tif").document());
  EXPECT_FALSE(made->ExportImage());
  EXPECT_TRUE(holds(made->status(), source.string())) << made->status();
  EXPECT_TRUE(outputs().empty());
}

TEST_F(ExportFaults, LeftoversOfDeadProcessesAreSweptAway) {
  makeNumbered("a.tif");
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  // No process has this number: the largest that the system gives is smaller.
  const std::string dead = std::string(".a.Tif.") + host + "-2000000000-1.partial";
  const std::string other = std::string(".b.Tif.") + host + "-2000000000-1.partial";
  writeText("out/" + dead + "/a.Tif", "half");
  writeText("out/" + other + "/b.Tif", "half");
  ASSERT_EQ(exportFrom("a", request("Tiff", "a.Tif")), "");
  EXPECT_EQ(outputs(), (std::vector<std::string>{other, "a.Tif"}));
}

}  // namespace
}  // namespace vlclientui::client
