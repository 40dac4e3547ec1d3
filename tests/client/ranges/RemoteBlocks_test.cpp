// Blocks of files: which requests they make, and files that are in memory already.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::ranges {
namespace {

using vlclientui::test::FaultProxy;
using FilePtr = std::shared_ptr<RemoteFile>;
using Names = std::vector<std::string>;

constexpr std::uint64_t block = RemoteFile::blockBytes;

std::string countedBytes(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 17 + i / 331) % 251);
  return bytes;
}

std::byte* bytesOf(std::string& text) { return reinterpret_cast<std::byte*>(text.data()); }

TEST(HeldFile, IsReadWithoutAServer) {
  const std::string content = countedBytes(3 * block + 5);
  const FilePtr file = RemoteFile::held(content);
  EXPECT_EQ(file->size(), content.size());
  EXPECT_EQ(file->heldBytes(), content.size());
  EXPECT_FALSE(file->hasChanged());
  std::string first(7, '\0');
  std::string last(9, '\0');
  EXPECT_EQ(file->read({{block - 3, 7, bytesOf(first)}, {content.size() - 9, 9, bytesOf(last)}}, 1000), "");
  EXPECT_EQ(first, content.substr(block - 3, 7));
  EXPECT_EQ(last, content.substr(content.size() - 9));
}

TEST(HeldFile, IsToldApartFromAnotherByItsSizeAlone) {
  EXPECT_EQ(RemoteFile::held("abc")->state(), RemoteFile::held("xyz")->state());
  EXPECT_NE(RemoteFile::held("abc")->state(), RemoteFile::held("abcd")->state());
}

class Neighbors : public testing::Test {
 protected:
  NetworkAccess access_;
  client::RemoteFiles files_{access_.transport()};
};

TEST_F(Neighbors, AreThoseThatWereToldForTheFolder) {
  files_.tellFolder("http://h/a%20b/", {"x.tif", "x.tfw"});
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/a b/x.tif"), (Names{"x.tif", "x.tfw"}));
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/a b/"), (Names{"x.tif", "x.tfw"}));
}

TEST_F(Neighbors, AreNoneForOtherFoldersAndNames) {
  files_.tellFolder("http://h/a/", {"x.tif"});
  for (const std::string name :
       {"/vsivlrange/http/h/x.tif", "/vsivlrange/http/h/a/b/x.tif", "/vsivlrange/https/h/a/x.tif",
        "/vsivlrange/http/h%3A81/a/x.tif", "/vsivlrange/http/h/A/x.tif", "/a/x.tif", "x.tif", ""})
    EXPECT_EQ(files_.neighbors(name), Names{}) << name;
}

TEST_F(Neighbors, AreReplacedByWhatIsToldLaterAndCanBeForgotten) {
  files_.tellFolder("http://h/a/", {"x.tif"});
  files_.tellFolder("http://h/a/", {"y.tif"});
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/a/x.tif"), Names{"y.tif"});
  files_.forget();
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/a/x.tif"), Names{});
}

TEST_F(Neighbors, HaveABoundOnTheirFolders) {
  files_.tellFolder("http://h/first/", {"x.tif"});
  for (int i = 0; i < 1024; ++i) files_.tellFolder("http://h/" + std::to_string(i) + "/", {"x.tif"});
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/first/x.tif"), Names{});
  EXPECT_EQ(files_.neighbors("/vsivlrange/http/h/1023/x.tif"), Names{"x.tif"});
}

struct Reading {
  std::string label;
  std::vector<std::uint64_t> blocks;  ///< a byte of each is read
  std::uint64_t ahead = 0;
  std::size_t requests = 0;
};

void PrintTo(const Reading& reading, std::ostream* out) { *out << reading.label; }

class RemoteBlocks : public platform::TemporaryFolder, public testing::WithParamInterface<Reading> {
 protected:
  RemoteBlocks() { write("a.tif", bytes_); }

  [[nodiscard]] FilePtr file() {
    const auto met = files_.meet(proxy_.address("/a.tif"));
    EXPECT_TRUE(std::holds_alternative<FilePtr>(met));
    return std::holds_alternative<FilePtr>(met) ? std::get<FilePtr>(met) : nullptr;
  }
  /// Reads the second byte of each block, and compares it.
  void readBlocks(RemoteFile& file, const std::vector<std::uint64_t>& numbers, std::uint64_t ahead = 0) {
    std::string read(numbers.size(), '\0');
    std::string expected;
    std::vector<FileStretch> stretches;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      stretches.push_back({numbers[i] * block + 1, 1, bytesOf(read) + i});
      expected += bytes_[numbers[i] * block + 1];
    }
    EXPECT_EQ(file.read(stretches, ahead), "");
    EXPECT_EQ(read, expected);
  }

  std::string bytes_ = countedBytes(200 * block + 9);
  FaultProxy proxy_{std::filesystem::path(folder_)};
  NetworkAccess access_;
  client::RemoteFiles files_{access_.transport()};
};

TEST_P(RemoteBlocks, AreFetchedWithAsFewRequestsAsItTakes) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  ASSERT_EQ(proxy_.counts().requests, 1U);
  readBlocks(*found, GetParam().blocks, GetParam().ahead);
  EXPECT_EQ(proxy_.counts().requests, 1 + GetParam().requests);
  readBlocks(*found, GetParam().blocks, GetParam().ahead);
  EXPECT_EQ(proxy_.counts().requests, 1 + GetParam().requests) << "they are kept";
}

INSTANTIATE_TEST_SUITE_P(
    Each, RemoteBlocks,
    testing::Values(Reading{"OfTheHeader", {0, 1, 2, 3}, 0, 0}, Reading{"BehindTheHeader", {4}, 0, 1},
                    Reading{"InARow", {10, 11, 12}, 0, 1}, Reading{"InTwoStretchesOfOne", {10, 10}, 0, 1},
                    Reading{"BackToFront", {12, 11, 10}, 0, 1}, Reading{"WithASmallGap", {10, 15}, 0, 1},
                    Reading{"WithALargerGap", {10, 16}, 0, 2}, Reading{"FarApart", {10, 100, 190}, 0, 3},
                    Reading{"WithOnesThatAreKept", {0, 3, 50}, 0, 1}, Reading{"AtTheEnd", {199}, 0, 1},
                    Reading{"WithMoreAheadThanThereIs", {199}, 100 * block, 1},
                    Reading{"WithLittleAhead", {20}, 8 * block, 1},
                    Reading{"WithMuchAheadInSeveral", {20}, 130 * block, 3}),
    [](const auto& each) { return each.param.label; });

class RemoteBlock : public RemoteBlocks {};

TEST_F(RemoteBlock, ThatIsTheLastAndShortIsReadToItsEnd) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  std::string read(block + 9, '\0');
  EXPECT_EQ(found->read({{199 * block, read.size(), bytesOf(read)}}), "");
  EXPECT_TRUE(read == bytes_.substr(199 * block));
}

TEST_F(RemoteBlock, OfAnEmptyStretchIsNotAskedFor) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  std::string read(1, 'x');
  EXPECT_EQ(found->read({{100 * block, 0, bytesOf(read)}, {0, 1, bytesOf(read)}}), "");
  EXPECT_EQ(read, bytes_.substr(0, 1));
  EXPECT_EQ(proxy_.counts().requests, 1U);
}

TEST_F(RemoteBlock, OfASmallFileComesWithItsSize) {
  for (const std::size_t size : {std::size_t{1}, std::size_t{block}, RemoteFile::firstBytes}) {
    write("small.tif", bytes_.substr(0, size));
    files_.forget();
    proxy_.clear();
    const auto met = files_.meet(proxy_.address("/small.tif"));
    ASSERT_TRUE(std::holds_alternative<FilePtr>(met)) << size;
    EXPECT_EQ(std::get<FilePtr>(met)->size(), size);
    std::string read(size, '\0');
    EXPECT_EQ(std::get<FilePtr>(met)->read({{0, size, bytesOf(read)}}, 1000000), "");
    EXPECT_TRUE(read == bytes_.substr(0, size));
    EXPECT_EQ(proxy_.counts().requests, 1U) << size;
  }
}

}  // namespace
}  // namespace vlclientui::client::ranges
