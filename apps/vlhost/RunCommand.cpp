#include "RunCommand.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>

#include "ExitCode.h"
#include "HeadlessSession.h"
#include "Telling.h"
#include "client/transport/Secrets.h"
#include "contracts/RuntimeFailure.h"
#include "host/RunDialogs.h"
#include "host/ShownRun.h"
#include "host/ShownText.h"
#include "runs/RunFile.h"
#include "runs/RunPlayer.h"

namespace vlclientui::vlhost {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::uintmax_t largestFile = 64U << 20U;

std::vector<runs::RunStatement> statementsIn(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  if (!stream || !std::filesystem::is_regular_file(file, error))
    throw RuntimeFailure("'" + file + "' cannot be read");
  if (std::filesystem::file_size(file, error) > largestFile || error)
    throw RuntimeFailure("'" + file + "' is too large for a file of operations");
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  return runs::readRun(text);
}

/// The lines stay what they are.
std::string terminalLines(const std::string& text) {
  std::string shown;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    shown += (begin > 0 ? "\n" : "") + terminalText(std::string_view(text).substr(begin, end - begin));
    begin = end + 1;
  }
  return shown;
}

/// Windows for the run: in memory, or on the desktop.
class Stage {
 public:
  explicit Stage(const RunCommand& command) {
    if (command.windows == RunWindows::Unseen) {
      host_ = host::start(host::composeHeadlessPlatform({}));
      return;
    }
    shown_.emplace(command.pause);
    host_ = host::start(host::composeDesktopPlatform({}));
  }

  [[nodiscard]] const host::ComposedHost& host() const { return host_; }
  [[nodiscard]] std::function<void(std::function<void()>)> later() const {
    if (!shown_) return {};
    return [this](std::function<void()> action) { shown_->later(std::move(action)); };
  }

 private:
  std::optional<host::ShownRun> shown_;
  host::ComposedHost host_;
};

void tellRead(const Json& read, const std::string& problem) {
  Json all{{"read", read}};
  if (!problem.empty()) all["problem"] = client::textWithoutSecrets(problem);
  std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

/// What is read on the way, as it is told.
class Readings {
 public:
  Readings(const Stage& stage, PlanOutput format) : stage_(stage), format_(format) {}

  void take(const std::string& what, const std::string& value) {
    const std::string shown = client::textWithoutSecrets(host::shownText(stage_.host(), value));
    if (format_ == PlanOutput::Text) {
      std::cout << terminalText(what) << ": " << terminalLines(shown) << std::endl;
    } else {
      read_.push_back(Json{{"what", what}, {"value", shown}});
    }
  }
  /// @param problem why the run ended early; empty where it did not.
  void end(const std::string& problem) const {
    if (format_ == PlanOutput::Text) return;
    tellRead(read_, problem);
  }

 private:
  const Stage& stage_;
  PlanOutput format_;
  Json read_ = Json::array();
};

int play(const RunCommand& command, std::vector<runs::RunStatement> statements) {
  const Stage stage(command);
  Readings readings(stage, command.format);
  runs::RunPlayer player(
      std::move(statements), *stage.host().platform->system,
      {[&stage](const runs::RunStatement& open) { return host::showDialogOfRun(stage.host(), open); },
       [&readings](const std::string& what, const std::string& value) { readings.take(what, value); },
       stage.later()});
  try {
    player.run();
  } catch (const RuntimeFailure& failure) {
    const std::string problem = command.file + ": " + host::shownText(stage.host(), failure.description());
    tell(problem);
    readings.end(problem);
    return Failure;
  }
  readings.end({});
  return Success;
}

}  // namespace

int runRunFile(const RunCommand& command) {
  std::vector<runs::RunStatement> statements;
  try {
    statements = statementsIn(command.file);
  } catch (const RuntimeFailure& failure) {
    const std::string problem = command.file + ": " + failure.description();
    tell(problem);
    if (command.format == PlanOutput::Json) tellRead(Json::array(), problem);
    return WrongDocument;
  }
  return play(command, std::move(statements));
}

}  // namespace vlclientui::vlhost
