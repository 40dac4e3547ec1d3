// What is fetched ahead of whoever reads a file of the web in order.
#include "client/ranges/FileAhead.h"

#include <array>
#include <iterator>
#include <thread>

#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeFixture.h"
#include "client/ranges/RangePassage.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

constexpr std::size_t partBytes = std::size_t{1} << 20U;
constexpr std::size_t partCount = 8;

class FilesAhead : public RangeFixture {
 protected:
  FilesAhead() {
    std::string bytes(partBytes * (partCount + 1), '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>((i * 31 + i / 977) % 253);
    write("a.bin", bytes);
    server_ = std::make_unique<FaultProxy>(fs::path(folder_));
    file_ =
        std::get<std::shared_ptr<RemoteFile>>(client::RemoteFiles::shared().meet(server_->address("/a.bin")));
  }

  /// Behind the first part of the file, which its first request brings a piece of.
  static FilePiece pieceOf(std::size_t part) { return {(part + 1) * partBytes, partBytes}; }

  std::shared_ptr<FileAhead> ahead(std::uint64_t mostBytes) {
    std::vector<FileAhead::Part> parts;
    for (std::size_t part = 0; part < partCount; ++part) parts.push_back({pieceOf(part)});
    auto made = std::make_shared<FileAhead>(file_, std::move(parts), mostBytes);
    file_->setReads(made);
    return made;
  }

  std::string readPart(std::size_t part) {
    target_.resize(partBytes);
    return file_->read({{pieceOf(part).first, partBytes, target_.data()}});
  }
  void awaitRequests(std::size_t count) const {
    while (server_->counts().requests < count || server_->counts().open > 0) std::this_thread::yield();
  }

  std::unique_ptr<FaultProxy> server_;
  std::shared_ptr<RemoteFile> file_;
  std::vector<std::byte> target_;
};

TEST_F(FilesAhead, ComeWhileNobodyAsksForThemYet) {
  const auto made = ahead(partCount * partBytes);
  ASSERT_EQ(readPart(0), "");
  awaitRequests(1 + partCount);
  const std::size_t before = server_->counts().requests;
  for (std::size_t part = 1; part < partCount; ++part) {
    ASSERT_EQ(readPart(part), "");
    EXPECT_EQ(
        static_cast<std::uint8_t>(target_[5]),
        static_cast<std::uint8_t>(((pieceOf(part).first + 5) * 31 + (pieceOf(part).first + 5) / 977) % 253));
  }
  EXPECT_EQ(server_->counts().requests, before);
}

TEST_F(FilesAhead, StayWithinTheirRoomUntilTheReaderGoesOn) {
  const auto made = ahead(2 * partBytes);
  ASSERT_EQ(readPart(0), "");
  awaitRequests(4);
  EXPECT_EQ(server_->counts().requests, 4U) << "the first, the one that was read, and two ahead";
  ASSERT_EQ(readPart(1), "");
  awaitRequests(5);
}

TEST_F(FilesAhead, BeginWhereTheReaderBegins) {
  const auto made = ahead(partCount * partBytes);
  ASSERT_EQ(readPart(5), "");
  awaitRequests(4);
  EXPECT_EQ(server_->counts().requests, 4U) << "the first, the sixth part, and the two behind it";
}

TEST_F(FilesAhead, OfAServerThatFailsLeaveTheWordsToTheReader) {
  const auto made = ahead(partBytes);
  ASSERT_EQ(readPart(0), "");
  awaitRequests(3);
  server_->alwaysAfter(0, "status=404");
  ASSERT_EQ(readPart(1), "") << "it was there already";
  EXPECT_NE(readPart(2), "");
  server_->clear();
  EXPECT_EQ(readPart(2), "");
}

TEST_F(FilesAhead, AreGivenUpWithTheirOwnerAndLeaveNoThread) {
  const auto threads = [] {
    const auto list = fs::directory_iterator("/proc/self/task");
    return std::distance(begin(list), end(list));
  };
  const auto before = threads();
  {
    const auto made = ahead(partBytes);
    ASSERT_EQ(readPart(0), "");
    awaitRequests(3);
    server_->alwaysAfter(0, "hang");
    ASSERT_EQ(readPart(1), "") << "it was there already";
    while (server_->counts().open == 0) std::this_thread::yield();
  }
  EXPECT_EQ(threads(), before);
}

TEST_F(FilesAhead, OfAnImageAreTheBlocksOfItsWindow) {
  make("a.tif", "GTiff", 1200, {"TILED=YES", "INTERLEAVE=PIXEL", "COMPRESS=DEFLATE"});
  const std::string name = rangeRasterName(server_->address("/a.tif"));
  const auto made = rangePassage(name, {100, 100, 1000, 1000});
  ASSERT_TRUE(made);
  const DatasetPtr remote = opened(name);
  const DatasetPtr local = opened(path("a.tif"));
  EXPECT_EQ(pixelsOf(*remote), pixelsOf(*local));
}

TEST_F(FilesAhead, AreNoneOfOtherFormatsAndOfWindowsBeyondTheImage) {
  make("a.png", "PNG", 64);
  make("a.tif", "GTiff", 64);
  EXPECT_FALSE(rangePassage(rangeRasterName(server_->address("/a.png")), {0, 0, 64, 64}));
  EXPECT_FALSE(rangePassage(rangeRasterName(server_->address("/a.tif")), {0, 0, 65, 64}));
  EXPECT_FALSE(rangePassage(rangeRasterName(server_->address("/none.tif")), {0, 0, 64, 64}));
}

}  // namespace
}  // namespace vlclientui::client::ranges
