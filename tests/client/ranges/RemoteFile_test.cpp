// What servers of files do wrong, and what comes of it.
#include "client/ranges/RemoteFile.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "client/QuickTransport.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "client/waiting/Wait.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::ranges {
namespace {

using vlclientui::test::FaultProxy;
using FilePtr = std::shared_ptr<RemoteFile>;

constexpr std::size_t megabyte = std::size_t{1} << 20U;

std::string madeBytes(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 31 + i / 977) % 253);
  return bytes;
}

struct Fault {
  std::string name;   ///< as the proxy knows it
  std::string words;  ///< of the reason
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class RemoteFiles : public platform::TemporaryFolder {
 protected:
  RemoteFiles() { write("a.tif", bytes_); }

  [[nodiscard]] client::RemoteFile::Met meet(const std::string& path = "/a.tif") {
    return files_.meet(proxy_.address(path));
  }
  [[nodiscard]] FilePtr file() {
    const auto met = meet();
    const auto* found = std::get_if<FilePtr>(&met);
    EXPECT_NE(found, nullptr) << problemOf(met);
    return found == nullptr ? nullptr : *found;
  }
  static std::string problemOf(const RemoteFile::Met& met) {
    const auto* problem = std::get_if<RemoteFile::Problem>(&met);
    return problem == nullptr ? std::string() : problem->text;
  }
  /// Why the stretch cannot be read; empty where it can, and then it is compared.
  std::string problemOfReading(RemoteFile& file, std::uint64_t first, std::size_t size) {
    std::string read(size, '\0');
    std::string problem = file.read({{first, size, reinterpret_cast<std::byte*>(read.data())}});
    if (problem.empty()) {
      EXPECT_TRUE(read == bytes_.substr(first, size)) << first << " " << size;
    }
    return problem;
  }

  std::string bytes_ = madeBytes(3 * megabyte + 77);
  FaultProxy proxy_{std::filesystem::path(folder_)};
  NetworkAccess access_{vlclientui::test::quickSettings()};
  client::RemoteFiles files_{access_.transport()};
};

class RemoteFileFault : public RemoteFiles, public testing::WithParamInterface<Fault> {};

TEST_P(RemoteFileFault, AtTheBeginningIsToldAndTheFileIsMetAfterIt) {
  proxy_.always(GetParam().name);
  const std::string problem = problemOf(meet());
  EXPECT_NE(problem.find(GetParam().words), std::string::npos) << problem;
  const std::size_t requests = proxy_.counts().requests;
  EXPECT_EQ(problemOf(meet()), problem);
  EXPECT_EQ(proxy_.counts().requests, requests) << "not asked for again at once";
  proxy_.clear();
  files_.forget();
  const FilePtr found = file();
  ASSERT_TRUE(found);
  EXPECT_EQ(problemOfReading(*found, 0, bytes_.size()), "");
  EXPECT_EQ(proxy_.counts().open, 0U);
}

TEST_P(RemoteFileFault, InTheMiddleIsToldAndTheSameFileReadsAfterIt) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.always(GetParam().name);
  const std::string problem = problemOfReading(*found, megabyte, megabyte);
  EXPECT_NE(problem.find(GetParam().words), std::string::npos) << problem;
  EXPECT_EQ(problemOfReading(*found, 10, 1000), "") << "what was kept needs no server";
  proxy_.clear();
  EXPECT_EQ(problemOfReading(*found, megabyte, megabyte), "");
}

// What this process has open or runs.
std::size_t countOf(const char* what) {
  const auto list = std::filesystem::directory_iterator(std::string("/proc/self/") + what);
  return static_cast<std::size_t>(std::distance(begin(list), end(list)));
}

TEST_P(RemoteFileFault, LeavesNoThreadHandleFileOrSecretBehind) {
  const std::size_t threads = countOf("task");
  const std::size_t handles = countOf("fd");
  for (const std::string& fault : {std::string(), GetParam().name}) {
    NetworkAccess access{vlclientui::test::quickSettings()};
    client::RemoteFiles files{access.transport()};
    const auto met = files.meet(proxy_.address("/a.tif?token=geheim"));
    ASSERT_TRUE(std::holds_alternative<FilePtr>(met)) << fault;
    proxy_.always(fault);
    const std::string problem = problemOfReading(*std::get<FilePtr>(met), megabyte, megabyte);
    EXPECT_EQ(problem.empty(), fault.empty()) << fault << ": " << problem;
    EXPECT_EQ(problem.find("geheim"), std::string::npos) << problem;
    proxy_.clear();
  }
  EXPECT_EQ(countOf("task"), threads);
  EXPECT_EQ(countOf("fd"), handles);
  EXPECT_EQ(names(), std::set<std::string>{"a.tif"});
}

INSTANTIATE_TEST_SUITE_P(Each, RemoteFileFault,
                         testing::Values(Fault{"status=500", "status 500"}, Fault{"status=503", "status 503"},
                                         Fault{"status=429", "status 429"},
                                         Fault{"status=404", "has no file"},
                                         Fault{"status=403", "does not let you read"},
                                         Fault{"reset", "broke off"}, Fault{"close", "broke off"},
                                         Fault{"garbage", "127.0.0.1"}, Fault{"truncate", "broke off"},
                                         Fault{"truncatechunks", "broke off"}, Fault{"resetmid", "broke off"},
                                         Fault{"otherpart", "broke off"}, Fault{"shortpart", "broke off"},
                                         Fault{"loop", "leads"}));

TEST_F(RemoteFiles, ComeBackWholeAfterAFaultThatPasses) {
  proxy_.arm(2, "reset");
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.arm(3, "status=503");
  EXPECT_EQ(problemOfReading(*found, 5, bytes_.size() - 5), "");
}

TEST_F(RemoteFiles, JoinNeighboringBlocksAndFetchLongRunsSideBySide) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  std::string one(200, '\0');
  std::string other(200, '\0');
  auto* const first = reinterpret_cast<std::byte*>(one.data());
  auto* const second = reinterpret_cast<std::byte*>(other.data());
  EXPECT_EQ(found->read({{megabyte, 200, first}, {megabyte + 70000, 200, second}}), "");
  EXPECT_EQ(proxy_.counts().requests, 2U);
  EXPECT_TRUE(one == bytes_.substr(megabyte, 200) && other == bytes_.substr(megabyte + 70000, 200));
  proxy_.always("delay=50");
  EXPECT_EQ(problemOfReading(*found, 0, bytes_.size()), "");
  EXPECT_LE(proxy_.counts().requests, 14U);
  EXPECT_GE(proxy_.counts().together, 2U);
}

TEST_F(RemoteFiles, FetchWhatLiesAheadOnce) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  std::byte target{};
  EXPECT_EQ(found->read({{megabyte, 1, &target}}, megabyte), "");
  const std::size_t before = proxy_.counts().requests;
  EXPECT_EQ(problemOfReading(*found, megabyte, megabyte), "");
  EXPECT_EQ(proxy_.counts().requests, before);
}

TEST_F(RemoteFiles, ThatChangeWhileTheyAreReadAreToldAndMetAnew) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  std::ranges::reverse(bytes_);
  write("a.tif", bytes_ + "x");
  EXPECT_NE(problemOfReading(*found, megabyte, 100).find("has changed while it was read"), std::string::npos);
  EXPECT_NE(problemOfReading(*found, 2 * megabyte, 100).find("has changed"), std::string::npos);
  const FilePtr anew = file();
  ASSERT_TRUE(anew);
  EXPECT_NE(anew, found);
  EXPECT_EQ(problemOfReading(*anew, 0, bytes_.size()), "");
}

TEST_F(RemoteFiles, OfTheSameSizeAreToldApartByTheirTag) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.always("header=ETag:\"another\"");
  EXPECT_NE(problemOfReading(*found, megabyte, 100).find("has changed"), std::string::npos);
}

TEST_F(RemoteFiles, ThatWereMetBeforeAreAskedForByTheirTag) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  const auto again = RemoteFile::meetAgain(found);
  ASSERT_TRUE(std::holds_alternative<FilePtr>(again));
  EXPECT_EQ(std::get<FilePtr>(again), found);
  write("a.tif", "II*");
  const auto changed = RemoteFile::meetAgain(found);
  ASSERT_TRUE(std::holds_alternative<FilePtr>(changed));
  EXPECT_EQ(std::get<FilePtr>(changed)->size(), 3U);
}

TEST_F(RemoteFiles, OfAServerWithoutPartsComeWholeUpToABound) {
  proxy_.always("norange");
  const FilePtr found = file();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->heldBytes(), bytes_.size());
  EXPECT_EQ(problemOfReading(*found, 0, bytes_.size()), "");
  EXPECT_EQ(proxy_.counts().requests, 1U);
  std::filesystem::resize_file(path("a.tif"), RemoteFile::mostWholeBytes + 1);
  client::RemoteFiles others(access_.transport());
  EXPECT_NE(problemOf(others.meet(proxy_.address("/a.tif"))).find("sends only the whole file"),
            std::string::npos);
  proxy_.always("endless");
  client::RemoteFiles more(access_.transport());
  EXPECT_NE(problemOf(more.meet(proxy_.address("/a.tif"))).find("sends only the whole file"),
            std::string::npos);
}

TEST_F(RemoteFiles, OfAServerThatStopsToSendPartsAreToldSo) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.always("norange");
  EXPECT_NE(problemOfReading(*found, megabyte, 100).find("another part"), std::string::npos);
}

TEST_F(RemoteFiles, AreNotAskedForBehindAWaitThatWasGivenUp) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  CancelToken token;
  token.cancel();
  const WaitScope scope(nullptr, token);
  const std::size_t before = proxy_.counts().requests;
  EXPECT_NE(problemOfReading(*found, megabyte, 100), "");
  EXPECT_EQ(proxy_.counts().requests, before);
}

TEST_F(RemoteFiles, FetchWhatSeveralReadersWantOnce) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.always("delay=100");
  const std::size_t before = proxy_.counts().requests;
  std::vector<std::string> problems(4, "none");
  {
    std::vector<std::jthread> readers;
    for (std::string& problem : problems)
      readers.emplace_back([&] { problem = problemOfReading(*found, megabyte, megabyte / 2); });
  }
  EXPECT_EQ(problems, std::vector<std::string>(4));
  EXPECT_EQ(proxy_.counts().requests, before + 1);
}

TEST_F(RemoteFiles, AreMetOnceWhereSeveralWantOneAtATime) {
  proxy_.always("delay=100");
  std::vector<FilePtr> found(6);
  {
    std::vector<std::jthread> readers;
    for (FilePtr& each : found) readers.emplace_back([&] { each = file(); });
  }
  EXPECT_EQ(proxy_.counts().requests, 1U);
  for (const FilePtr& each : found) EXPECT_TRUE(each && each == found.front());
}

TEST_F(RemoteFiles, TellOfTheWaitForSomebodyElsesAnswer) {
  class GivingUp final : public WaitListener {
   public:
    WaitAnswer stillWaiting(const WaitedFor& what) override {
      host = what.host;
      return WaitAnswer::GiveUp;
    }
    std::string host;
  } listener;
  proxy_.always("hold");
  std::jthread meeting([&] { static_cast<void>(files_.meet(proxy_.address("/a.tif"))); });
  while (proxy_.counts().open == 0) std::this_thread::yield();
  {
    const WaitScope scope(&listener, {}, {std::chrono::milliseconds(20), std::chrono::milliseconds(20)});
    EXPECT_TRUE(std::holds_alternative<RemoteFile::Problem>(files_.meet(proxy_.address("/a.tif"))));
  }
  EXPECT_EQ(listener.host, proxy_.place());
  proxy_.always("");
  proxy_.release();
}

TEST_F(RemoteFiles, WaitForNobodyWhoIsGivenUp) {
  proxy_.always("hold");
  CancelToken token;
  std::jthread meeting([&] { static_cast<void>(files_.meet(proxy_.address("/a.tif"))); });
  while (proxy_.counts().open == 0) std::this_thread::yield();
  std::jthread waiting([&] {
    const WaitScope scope(nullptr, token);
    EXPECT_TRUE(std::holds_alternative<RemoteFile::Problem>(files_.meet(proxy_.address("/a.tif"))));
  });
  token.cancel();
  waiting.join();
  EXPECT_EQ(proxy_.counts().requests, 1U);
  proxy_.always("");
  proxy_.release();
}

TEST_F(RemoteFiles, ThatOneReaderCannotGetAreTriedByTheNext) {
  const FilePtr found = file();
  ASSERT_TRUE(found);
  proxy_.always("hold");
  CancelToken token;
  std::string first;
  std::jthread giving([&] {
    const WaitScope scope(nullptr, token);
    first = problemOfReading(*found, megabyte, 100);
  });
  while (proxy_.counts().open == 0) std::this_thread::yield();
  std::string second = "none";
  std::jthread waiting([&] { second = problemOfReading(*found, megabyte, 100); });
  token.cancel();
  giving.join();
  proxy_.always("");
  proxy_.release();
  waiting.join();
  EXPECT_NE(first, "");
  EXPECT_EQ(second, "");
}

}  // namespace
}  // namespace vlclientui::client::ranges
