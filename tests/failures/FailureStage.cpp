#include "failures/FailureStage.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include "failures/CountedMemory.h"
#include "frame/LiveObjects.h"
#include "platform/LibXmlService.h"
#include "scenarios/Places.h"

namespace vlclientui::test {

namespace {

std::string bytesOfFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

int recordedFailures() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

bool wholeDocument(const std::string& content) {
  const platform::LibXmlService service{platform::PathTranslation("/")};
  return service.createDocument()->loadXml(content);
}

}  // namespace

std::vector<std::size_t> FailureStage::casesOf(const std::vector<std::size_t>& places) {
  constexpr std::size_t few = 60;
  if (sweepsEveryPlace() || places.size() <= few) return places;
  std::vector<std::size_t> some;
  for (std::size_t turn = 0; turn < few; ++turn) some.push_back(places.at(turn * places.size() / few));
  return some;
}

FailureStage::Failing FailureStage::nothingFails() {
  return {[] {}, [] {}, ""};
}

std::map<std::string, std::string> FailureStage::files() const {
  std::map<std::string, std::string> found;
  const auto& home = world_.system->home();
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
    const std::string name = entry.path().lexically_relative(home).string();
    if (entry.is_regular_file() && !name.starts_with("Program")) found[name] = bytesOfFile(entry.path());
  }
  return found;
}

Aftermath FailureStage::run(SweepCase& made, const Failing& failing) {
  Aftermath after;
  world_.refresh();
  failing.begins();
  try {
    made.run();
    failing.ends();
  } catch (const std::exception& escaped) {
    failing.ends();
    after.escaped = escaped.what();
  } catch (...) {
    failing.ends();
    after.escaped = "something unknown";
  }
  after.reported = std::exchange(world_.toolkit->failures, {});
  after.told = made.told();
  after.files = files();
  return after;
}

FailureStage::Both FailureStage::runTwice(const SweepScenario& scenario, const Failing& failing) {
  Both both;
  world_.begin();
  {
    const auto made = scenario.make(world_);
    both.first = run(*made, failing);
    both.second = run(*made, nothingFails());
    EXPECT_NE(world_.toolkit->pointer, Pointer::Hourglass);
    made->release();
  }
  EXPECT_EQ(world_.engines->alive(), 0U);
  EXPECT_EQ(liveObjectCount(), objectsBefore_);
  world_.end();
  world_.forget();
  return both;
}

void FailureStage::learn(const SweepScenario& scenario) {
  objectsBefore_ = liveObjectCount();
  for (int turn = 0; turn < 3; ++turn) undisturbed_ = runTwice(scenario, nothingFails());
  const auto before = memory::alive();
  {
    const Both again = runTwice(scenario, nothingFails());
    // What is compared with must itself be settled.
    ASSERT_EQ(again.second.told, undisturbed_.second.told);
    ASSERT_EQ(again.first.escaped, "");
  }
  ASSERT_EQ(memory::alive(), before);
}

void FailureStage::count(const SweepScenario& scenario, const Failing& counting) {
  static_cast<void>(runTwice(scenario, counting));
}

Verdict FailureStage::disturb(const SweepScenario& scenario, const Failing& failing) {
  Verdict verdict;
  const auto before = memory::alive();
  const int failuresBefore = recordedFailures();
  verdict = runAndJudge(scenario, failing);
  // A failure that was noted keeps its text.
  if (memory::alive() == before || recordedFailures() != failuresBefore) return verdict;
  // What grows once, such as a vector of the thread, is no leak.
  const auto grown = memory::alive();
  static_cast<void>(runAndJudge(scenario, failing));
  EXPECT_EQ(memory::alive(), grown) << "allocations are left";
  return verdict;
}

Verdict FailureStage::runAndJudge(const SweepScenario& scenario, const Failing& failing) {
  const Both both = runTwice(scenario, failing);
  EXPECT_EQ(both.second.escaped, "") << "the same objects do not work again";
  EXPECT_EQ(both.second.reported, std::vector<std::string>{});
  EXPECT_EQ(both.second.told, undisturbed_.second.told) << "the same objects work otherwise than before";
  for (const std::string& text : both.first.reported) EXPECT_EQ(text, failing.text);
  EXPECT_TRUE(both.first.escaped.empty() || both.first.escaped == failing.text) << both.first.escaped;
  expectWholeFiles(both.first);
  expectWholeFiles(both.second);
  return {!both.first.escaped.empty(), both.first.reported.size()};
}

void FailureStage::expectWholeFiles(const Aftermath& after) const {
  for (const auto& [name, content] : after.files) {
    const bool known = undisturbed_.first.files.contains(name) || undisturbed_.second.files.contains(name);
    EXPECT_TRUE(known) << name << " is left behind";
    if (content == "an older file") continue;
    EXPECT_TRUE(wholeDocument(content)) << name << " is half written: " << content;
  }
}

}  // namespace vlclientui::test
