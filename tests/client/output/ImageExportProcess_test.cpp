#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "client/ChildProcess.h"
#include "client/ExportFixture.h"
#include "client/output/GrowingFile.h"
#include "client/output/ImageExport.h"
#include "support/FailingDisk.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

using test::contentOf;
using test::GetImage;
using test::holds;

/// The six entries that a person can choose.
struct Entry {
  const char* format;
  const char* compression;
};

class EveryFormat : public test::ExportFixture, public testing::WithParamInterface<Entry> {
 protected:
  EveryFormat() { makeNoise(); }

  [[nodiscard]] GetImage noise(const std::string& name) const {
    GetImage wanted = request(GetParam().format, name);
    wanted.compression = GetParam().compression;
    wanted.quality = "100";
    wanted.extent = {500000, 5150000 - 150000, 500000 + 200000, 5150000};
    wanted.columns = columnTotal;
    wanted.rows = rowTotal;
    return wanted;
  }

  /// What a failed export left, for a parent process to compare.
  [[nodiscard]] std::string left() const {
    std::string text;
    for (const std::string& name : outputs()) text += name + " " + contentOf(out(name)) + "\n";
    return text;
  }

  static constexpr int columnTotal = 2000;
  static constexpr int rowTotal = 1500;
  static constexpr auto formerOnly = "former former\n";

 private:
  // No compression makes it smaller.
  void makeNoise() const {
    test::RasterRecipe recipe;
    recipe.width = columnTotal;
    recipe.height = rowTotal;
    recipe.bands = 3;
    recipe.finish = [](GDALDataset& d) {
      std::vector<std::uint8_t> values(std::size_t{columnTotal} * rowTotal * 3);
      std::uint32_t state = 1;
      for (std::uint8_t& value : values) {
        state = state * 1664525U + 1013904223U;
        value = static_cast<std::uint8_t>(state >> 24U);
      }
      EXPECT_EQ(d.RasterIO(GF_Write, 0, 0, columnTotal, rowTotal, values.data(), columnTotal, rowTotal,
                           GDT_Byte, 3, nullptr, 0, 0, 0),
                CE_None);
    };
    makeRaster("noise.tif", recipe);
  }
};

INSTANTIATE_TEST_SUITE_P(Export, EveryFormat,
                         testing::Values(Entry{"Tiff", ""}, Entry{"Tiff", "JPEG"}, Entry{"Tiff", "LZ77"},
                                         Entry{"JPEG", ""}, Entry{"JPEG2000", ""}, Entry{"PNG", ""}),
                         [](const auto& one) {
                           return std::string(one.param.format) + one.param.compression;
                         });

TEST_P(EveryFormat, KilledInTheMiddleLeavesTheFormerFileAlone) {
  if (!GrowingFile::withoutName(out(""))) {
    GTEST_SKIP() << "the file system of " << out("") << " knows no files without a name";
  }
  writeText("out/former", "former");
  const auto result = test::inChild([this] {
    const auto made = service("ImageService://localhost/noise");
    made->setProgress([](double share) {
      if (share > 0.3) kill(getpid(), SIGKILL);
      return true;
    });
    made->ExportProperties(noise("former").document());
    return std::string(made->ExportImage() ? "exported" : "failed");
  });
  EXPECT_TRUE(result.isKilled) << result.text;
  EXPECT_EQ(left(), formerOnly);
}

TEST_P(EveryFormat, FullFileSystemLeavesTheFormerFileAndSaysWhatHelps) {
  writeText("out/former", "former");
  for (const int error : {ENOSPC, EDQUOT}) {
    const auto result = test::inChild([&] {
      vlFailUnder(out("").c_str(), error, 2'000'000);
      const std::string message = exportFrom("noise", noise("former"));
      return left() + message;
    });
    EXPECT_TRUE(result.text.starts_with(formerOnly)) << result.text;
    EXPECT_TRUE(holds(result.text, out("").substr(0, out("").size() - 1))) << result.text;
    EXPECT_TRUE(holds(result.text, std::strerror(error))) << result.text;
    EXPECT_TRUE(holds(result.text, "Free some room")) << result.text;
  }
}

TEST_P(EveryFormat, DiskThatBreaksLeavesTheFormerFileAndIsTold) {
  writeText("out/former", "former");
  const auto result = test::inChild([&] {
    vlFailUnder(out("").c_str(), EIO, 1'000'000);
    const std::string message = exportFrom("noise", noise("former"));
    return left() + message;
  });
  EXPECT_TRUE(result.text.starts_with(formerOnly)) << result.text;
  EXPECT_TRUE(holds(result.text, "Input/output error")) << result.text;
}

TEST_P(EveryFormat, FolderThatVanishesIsTold) {
  const auto result = test::inChild([this] {
    const auto made = service("ImageService://localhost/noise");
    made->setProgress([this](double share) {
      if (share > 0.3) fs::remove_all(folder() / "out");
      return true;
    });
    made->ExportProperties(noise("former").document());
    return std::string(made->ExportImage() ? "exported" : made->status());
  });
  EXPECT_TRUE(holds(result.text, "No such file or directory")) << result.text;
  EXPECT_TRUE(holds(result.text, out("").substr(0, out("").size() - 1))) << result.text;
  EXPECT_FALSE(fs::exists(folder() / "out"));
}

TEST_P(EveryFormat, FileThatMayNotGrowLeavesTheFormerOneAndSaysWhy) {
  const auto result = test::inChild([this] {
    writeText("out/former", "former");
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100000, 100000};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string message = exportFrom("noise", noise("former"));
    return left() + message;
  });
  EXPECT_TRUE(result.text.starts_with(formerOnly)) << result.text;
  EXPECT_TRUE(holds(result.text, "could not be written")) << result.text;
  EXPECT_TRUE(holds(result.text, "File too large")) << result.text;
}

class UnwritableFolder : public test::ExportFixture {};

TEST_F(UnwritableFolder, IsToldOfWhereTheFileSystemIsReadOnly) {
  makeNumbered("a.tif");
  writeText("out/former", "former");
  const auto result = test::inChild([this] {
    vlFailUnder(out("").c_str(), EROFS, 0);
    const std::string message = exportFrom("a", request("Tiff", "former"));
    return contentOf(out("former")) + " " + message;
  });
  EXPECT_TRUE(result.text.starts_with("former Cannot write in the folder " + folder().string()))
      << result.text;
  EXPECT_TRUE(holds(result.text, "Read-only file system. Choose a folder that you may write."))
      << result.text;
}

TEST_F(UnwritableFolder, IsToldOfWhereTheRightsAreMissing) {
  makeNumbered("a.tif");
  writeText("out/former", "former");
  fs::permissions(folder(), fs::perms::others_read | fs::perms::others_exec, fs::perm_options::add);
  fs::permissions(out(""), fs::perms::owner_write, fs::perm_options::remove);
  const auto result = test::inChild([this] {
    test::dropRights();
    return exportFrom("a", request("Tiff", "former"));
  });
  fs::permissions(out(""), fs::perms::owner_write, fs::perm_options::add);
  EXPECT_TRUE(holds(result.text, "Cannot write in the folder " + folder().string())) << result.text;
  EXPECT_TRUE(holds(result.text, "Permission denied. Choose a folder that you may write.")) << result.text;
  EXPECT_EQ(contentOf(out("former")), "former");
  EXPECT_EQ(outputs(), (std::vector<std::string>{"former"}));
}

TEST_F(UnwritableFolder, IsToldOfWhereItIsAFile) {
  makeNumbered("a.tif");
  writeText("out/former", "former");
  EXPECT_TRUE(holds(exportFrom("a", request("Tiff", "former/a.Tif")), "no such folder"));
  EXPECT_EQ(contentOf(out("former")), "former");
}

}  // namespace
}  // namespace vlclientui::client
