#include "client/output/GrowingFile.h"

#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "client/ExportFixture.h"
#include "client/output/GrowingFolder.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using test::contentOf;

class GrowingFiles : public test::RasterFixture {
 protected:
  [[nodiscard]] std::filesystem::path path(const std::string& name) const { return folder() / name; }

  static std::string allOf(const GrowingFile& file) {
    std::string text(file.size(), '\0');
    text.resize(file.read(0, text.data(), text.size()));
    return text;
  }

  static std::size_t put(GrowingFile& file, std::uint64_t at, const std::string& text) {
    return file.write(at, text.data(), text.size());
  }
};

TEST_F(GrowingFiles, WithANameAreSeenAtOnce) {
  const auto file = GrowingFile::named(path("a"));
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(put(*file, 0, "text"), 4U);
  EXPECT_TRUE(file->sync());
  EXPECT_EQ(contentOf(path("a").string()), "text");
  EXPECT_EQ(file->failureNumber(), 0);
}

TEST_F(GrowingFiles, NeverTakeANameThatIsTaken) {
  writeText("a", "former");
  EXPECT_EQ(GrowingFile::named(path("a")), nullptr);
  EXPECT_EQ(errno, EEXIST);
  EXPECT_EQ(contentOf(path("a").string()), "former");
  EXPECT_EQ(GrowingFile::named(path("missing/a")), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(GrowingFiles, WithoutANameAreSeenOnceTheyHaveOne) {
  const auto file = GrowingFile::withoutName(folder());
  if (!file) {
    EXPECT_EQ(errno, EOPNOTSUPP);
    return;
  }
  put(*file, 0, "hidden");
  EXPECT_TRUE(std::filesystem::is_empty(folder()));
  EXPECT_TRUE(file->giveName(path("a")));
  EXPECT_EQ(contentOf(path("a").string()), "hidden");
  EXPECT_EQ(file->failureNumber(), 0);
}

TEST_F(GrowingFiles, WithoutANameNeedAFolderThatIsThere) {
  EXPECT_EQ(GrowingFile::withoutName(path("missing")), nullptr);
  EXPECT_NE(errno, 0);
}

TEST_F(GrowingFiles, AreReadAndWrittenAnywhere) {
  const auto file = GrowingFile::named(path("a"));
  put(*file, 4, "late");
  EXPECT_EQ(file->size(), 8U);
  EXPECT_EQ(allOf(*file), std::string("\0\0\0\0late", 8));
  put(*file, 0, "soon");
  EXPECT_EQ(allOf(*file), "soonlate");
  std::string part(10, '?');
  EXPECT_EQ(file->read(6, part.data(), part.size()), 2U);
  EXPECT_EQ(part.substr(0, 2), "te");
  EXPECT_EQ(file->read(99, part.data(), part.size()), 0U);
}

TEST_F(GrowingFiles, ShrinkAndGrow) {
  const auto file = GrowingFile::named(path("a"));
  put(*file, 0, "long text");
  EXPECT_TRUE(file->resize(4));
  EXPECT_EQ(allOf(*file), "long");
  EXPECT_TRUE(file->resize(6));
  EXPECT_EQ(allOf(*file), std::string("long\0\0", 6));
}

TEST_F(GrowingFiles, HaveTheRightsThatTheyAreGiven) {
  const auto file = GrowingFile::named(path("a"));
  EXPECT_TRUE(file->setRights(std::filesystem::perms::owner_read));
  EXPECT_EQ(std::filesystem::status(path("a")).permissions(), std::filesystem::perms::owner_read);
}

TEST_F(GrowingFiles, RememberTheFirstThatFailed) {
  writeText("taken", "");
  const auto file = GrowingFile::named(path("a"));
  EXPECT_FALSE(file->giveName(path("taken")));
  EXPECT_EQ(file->failureNumber(), EEXIST);
  EXPECT_FALSE(file->giveName(path("missing/b")));
  EXPECT_EQ(file->failureNumber(), EEXIST);
}

TEST_F(GrowingFiles, HoldMoreThanTheDiskIsToldOfAtOnce) {
  const auto file = GrowingFile::named(path("a"));
  const std::string megabyte(1U << 20U, 'x');
  for (std::uint64_t i = 0; i < 40; ++i)
    ASSERT_EQ(put(*file, i * megabyte.size(), megabyte), megabyte.size());
  EXPECT_EQ(file->size(), 40U << 20U);
  EXPECT_TRUE(file->sync());
}

/// A folder that only the raster library sees, filled with files of the test's folder.
class GrowingFolders : public GrowingFiles {
 protected:
  GrowingFolder growing_{[this](const std::string& name) -> std::shared_ptr<GrowingFile> {
    if (name == "refused") {
      errno = ENOSPC;
      return nullptr;
    }
    return GrowingFile::named(path(std::to_string(made_++) + name));
  }};
  int made_ = 0;

  /// What the raster library reads of a name.
  std::string read(const std::string& name) {
    VSILFILE* file = VSIFOpenL(growing_.pathOf(name).c_str(), "rb");
    if (file == nullptr) return "(none)";
    std::vector<char> text(100);
    text.resize(VSIFReadL(text.data(), 1, text.size(), file));
    VSIFCloseL(file);
    return {text.begin(), text.end()};
  }

  bool write(const std::string& name, const std::string& text) {
    VSILFILE* file = VSIFOpenL(growing_.pathOf(name).c_str(), "wb");
    if (file == nullptr) return false;
    const bool isWritten = VSIFWriteL(text.data(), 1, text.size(), file) == text.size();
    return VSIFCloseL(file) == 0 && isWritten;
  }
};

TEST_F(GrowingFolders, KeepWhatTheRasterLibraryWrites) {
  EXPECT_TRUE(write("b", "second"));
  EXPECT_TRUE(write("a", "first"));
  EXPECT_EQ(growing_.names(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(read("a"), "first");
  EXPECT_EQ(allOf(*growing_.find("b")), "second");
  EXPECT_EQ(growing_.failureNumber(), 0);
}

TEST_F(GrowingFolders, MakeAFileAnewThatIsWrittenAgain) {
  EXPECT_TRUE(write("a", "long text"));
  EXPECT_TRUE(write("a", "short"));
  EXPECT_EQ(read("a"), "short");
  EXPECT_EQ(growing_.names().size(), 1U);
}

TEST_F(GrowingFolders, KnowNoOtherNames) {
  EXPECT_EQ(growing_.find("a"), nullptr);
  EXPECT_EQ(read("a"), "(none)");
  EXPECT_FALSE(growing_.remove("a"));
}

TEST_F(GrowingFolders, ForgetWhatIsRemoved) {
  EXPECT_TRUE(write("a", "x"));
  EXPECT_TRUE(growing_.remove("a"));
  EXPECT_EQ(read("a"), "(none)");
  EXPECT_TRUE(write("b", "y"));
  EXPECT_TRUE(removeGrowing(growing_.pathOf("b")));
  EXPECT_TRUE(growing_.names().empty());
}

TEST_F(GrowingFolders, TellWhyAFileCannotBeMade) {
  const GdalScope quiet;
  EXPECT_FALSE(write("refused", "x"));
  EXPECT_EQ(growing_.failureNumber(), ENOSPC);
  EXPECT_EQ(growing_.make("refused"), nullptr);
}

TEST_F(GrowingFolders, DoNotSeeEachOthersFiles) {
  const GrowingFolder other([](const std::string&) { return std::shared_ptr<GrowingFile>(); });
  EXPECT_TRUE(write("a", "x"));
  EXPECT_EQ(other.find("a"), nullptr);
  EXPECT_NE(other.pathOf("a"), growing_.pathOf("a"));
}

TEST_F(GrowingFolders, AnswerQuestionsOfTheRasterLibrary) {
  EXPECT_TRUE(write("a", "12345"));
  VSIStatBufL facts;
  ASSERT_EQ(VSIStatL(growing_.pathOf("a").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_size, 5);
  EXPECT_NE(VSIStatL(growing_.pathOf("b").c_str(), &facts), 0);
}

}  // namespace
}  // namespace vlclientui::client
