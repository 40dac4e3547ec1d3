#include "client/raster/FileCache.h"

#include <atomic>
#include <chrono>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class FileCaches : public test::RasterFixture {
 protected:
  /// The name of a file and the count of all reads so far.
  struct Reader {
    std::atomic<int>& reads;
    CancelToken* givenUpMeanwhile = nullptr;

    std::string operator()(const fs::path& file) {
      ++reads;
      if (givenUpMeanwhile != nullptr) givenUpMeanwhile->cancel();
      return file.filename().string();
    }
    std::string missing(const std::error_code& error) { return "missing: " + error.message(); }
  };

  std::vector<std::string> read(const std::vector<fs::path>& files) {
    return cache_.read(files, [this] {
      ++readers_;
      return Reader{reads_, givenUpMeanwhile_};
    });
  }

  std::vector<fs::path> makeFiles(int count) const {
    std::vector<fs::path> files;
    for (int i = 0; i < count; ++i) files.push_back(writeText("f" + std::to_string(i), "text"));
    return files;
  }

  static void touch(const fs::path& file, std::chrono::seconds later) {
    fs::last_write_time(file, fs::last_write_time(file) + later);
  }

  FileCache<std::string> cache_;
  std::atomic<int> reads_ = 0;
  std::atomic<int> readers_ = 0;
  CancelToken* givenUpMeanwhile_ = nullptr;
};

TEST_F(FileCaches, ReadEachFileOnceAsLongAsItStaysTheSame) {
  const auto files = makeFiles(3);
  EXPECT_EQ(read(files), (std::vector<std::string>{"f0", "f1", "f2"}));
  EXPECT_EQ(read({files[2], files[0]}), (std::vector<std::string>{"f2", "f0"}));
  EXPECT_EQ(reads_, 3);
}

TEST_F(FileCaches, ReadNoMoreOnceTheWorkIsGivenUp) {
  const auto files = makeFiles(200);
  CancelToken token;
  std::vector<std::string> results;
  {
    const WaitScope scope(nullptr, token);
    static_cast<void>(read({files.front()}));
    token.cancel();
    results = read(files);
  }
  EXPECT_EQ(reads_, 1);
  EXPECT_EQ(results.front(), "f0") << "what is known is told";
  EXPECT_TRUE(results.back().starts_with("missing: ")) << results.back();
  EXPECT_EQ(read(files).back(), "f199") << "nothing of it is remembered";
}

TEST_F(FileCaches, ReadAFileAgainWhenItsTimeOrSizeChanges) {
  const auto files = makeFiles(2);
  (void)read(files);
  touch(files[0], std::chrono::seconds(5));
  (void)read(files);
  EXPECT_EQ(reads_, 3);
  const auto time = fs::last_write_time(files[1]);
  writeText("f1", "longer text");
  fs::last_write_time(files[1], time);
  (void)read(files);
  EXPECT_EQ(reads_, 4);
}

TEST_F(FileCaches, DoNotRememberWhatWasReadWhenTheWorkWasGivenUp) {
  const auto files = makeFiles(1);
  CancelToken token;
  givenUpMeanwhile_ = &token;
  {
    const WaitScope scope(nullptr, token);
    (void)read(files);
  }
  givenUpMeanwhile_ = nullptr;
  EXPECT_EQ(reads_, 1);
  (void)read(files);
  EXPECT_EQ(reads_, 2);
}

TEST_F(FileCaches, TellOfAMissingFileWithoutRememberingIt) {
  const fs::path file = folder() / "late";
  EXPECT_TRUE(read({file}).front().starts_with("missing: "));
  writeText("late", "");
  EXPECT_EQ(read({file}).front(), "late");
  fs::remove(file);
  EXPECT_TRUE(read({file}).front().starts_with("missing: "));
}

TEST_F(FileCaches, ReadWhatLiesInNoFileEachTime) {
  const fs::path name = "/vsimem/none.tif";
  EXPECT_EQ(read({name}).front(), "none.tif");
  EXPECT_EQ(read({name}).front(), "none.tif");
  EXPECT_EQ(reads_, 2);
}

TEST_F(FileCaches, GiveManyResultsInTheOrderOfTheFiles) {
  const auto files = makeFiles(200);
  const auto results = read(files);
  ASSERT_EQ(results.size(), files.size());
  for (std::size_t i = 0; i < files.size(); ++i) EXPECT_EQ(results[i], files[i].filename().string());
  EXPECT_EQ(reads_, 200);
}

TEST_F(FileCaches, TakeOneReaderForAFewFiles) {
  (void)read(makeFiles(7));
  EXPECT_EQ(readers_, 1);
  EXPECT_EQ(read({}), std::vector<std::string>());
}

TEST_F(FileCaches, TakeAReaderForEachOfAFewRastersOfServers) {
  // All wait for a server at the same time, so that four readers are needed to go on.
  std::atomic<int> waiting = 0;
  struct Waiting {
    std::atomic<int>& waiting;
    std::string operator()(const fs::path& file) {
      ++waiting;
      while (waiting < 4) std::this_thread::yield();
      return file.filename().string();
    }
    std::string missing(const std::error_code& error) { return error.message(); }
  };
  std::vector<fs::path> names;
  for (int i = 0; i < 4; ++i) names.emplace_back("/vsinone/" + std::to_string(i));
  EXPECT_EQ(cache_.read(names, [&] { return Waiting{waiting}; }),
            (std::vector<std::string>{"0", "1", "2", "3"}));
}

TEST_F(FileCaches, MayBeAskedByManyThreads) {
  const auto files = makeFiles(50);
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([&] { EXPECT_EQ(read(files).back(), "f49"); });
    }
  }
  const int before = reads_;
  (void)read(files);
  EXPECT_EQ(reads_, before);
}

}  // namespace
}  // namespace vlclientui::client
