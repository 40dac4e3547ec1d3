#include "JobsCommand.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <map>
#include <optional>

#include <nlohmann/json.hpp>

#include "ExitCode.h"
#include "ExportPlanText.h"
#include "HeadlessSession.h"
#include "JobLog.h"
#include "ProgressLine.h"
#include "ServicesCommand.h"
#include "Telling.h"
#include "client/connections/SentSecret.h"
#include "client/facade/JobRun.h"
#include "client/jobs/JobDocument.h"
#include "client/jobs/JobRequest.h"
#include "client/transport/Secrets.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::vlhost {
namespace {

using Clock = std::chrono::steady_clock;

enum class State { NotRun, Unreadable, Planned, Written, Skipped, Failed };

/// One job of the list, and what came of it.
struct Job {
  std::string name;  ///< its file as it was named
  std::optional<client::ExportJob> job;
  State state = State::NotRun;
  std::string problem;  ///< why nothing was written
  double seconds = 0;   ///< that it took
  std::string plan;     ///< of a dry run, as JSON
};

const char* wordOf(State state) {
  switch (state) {
    case State::NotRun:
      return "not run";
    case State::Unreadable:
      return "unreadable";
    case State::Planned:
      return "planned";
    case State::Written:
      return "written";
    case State::Skipped:
      return "skipped";
    case State::Failed:
      return "failed";
  }
  return "";
}

/// Runs jobs one after the other and tells of each.
class Jobs {
 public:
  Jobs(const JobsCommand& command, const HeadlessSession& session)
      : command_(command),
        session_(session),
        xml_(*session.host().platform->xml),
        log_(command.dryRun ? std::filesystem::path() : std::filesystem::path(command.log), xml_),
        progress_(command.progress) {}

  int run() {
    for (const std::string& file : command_.files) jobs_.push_back(read(file));
    const bool stops = command_.afterFailure == AfterFailure::Stop;
    if (!stops || count(State::Unreadable) == 0) {
      for (Job& job : jobs_) {
        if (job.state == State::NotRun) take(job);
        if (stops && job.state == State::Failed) break;
      }
    }
    tellSummary();
    if (count(State::Failed) > 0) return Failure;
    return count(State::Unreadable) > 0 ? WrongDocument : Success;
  }

 private:
  Job read(const std::string& file) {
    Job job{.name = file, .job = {}, .problem = {}, .plan = {}};
    try {
      job.job = client::openJob(wholePath(file), xml_);
      if (!command_.output.empty()) job.job->file = command_.output;
      const auto [other, isFirst] = writers_.emplace(job.job->file, file);
      if (!isFirst) throw RuntimeFailure("'" + file + "' writes the same file as '" + other->second + "'");
    } catch (const RuntimeFailure& failure) {
      job.state = State::Unreadable;
      job.problem = failure.description();
      tell(job.problem);
    }
    return job;
  }

  void take(Job& job) {
    const Clock::time_point began = Clock::now();
    try {
      job.state = done(job);
    } catch (const std::exception& failure) {
      job.state = State::Failed;
      job.problem = failure.what();
    }
    progress_.end();
    job.seconds = std::chrono::duration<double>(Clock::now() - began).count();
    tellOf(job);
  }

  State done(Job& taken) {
    const client::ExportJob& job = *taken.job;
    refuseMissingSamples(session_.host().installation, job.reference);
    if (command_.dryRun) return plan(taken);
    const auto inputs = [this](const client::ExportJob& of) {
      return client::inputMark(of, session_.host().catalogue, xml_,
                               {session_.host().installation.definitions});
    };
    if (command_.keeping == client::Keeping::GoOn && log_.isDone(job, inputs)) return State::Skipped;
    const std::string before = log_.isKept() ? inputs(job) : std::string();
    client::runJob(job, session_.host().catalogue, xml_, {settings(), command_.keeping});
    log_.add(job, before);
    return State::Written;
  }

  State plan(Job& taken) {
    const client::ExportJob& job = *taken.job;
    client::OVLCatalogueImageService service(session_.host().catalogue, xml_, job.reference, settings());
    client::handOver(job, service);
    client::ExportJob shown = job;
    shown.reference = client::withoutTypedSecrets(job.reference).text;
    const ExportPlanned planned{
        client::jobRequest(job), {}, client::jobDocument(shown, xml_), service.forecastExport()};
    taken.plan = planText(planned, command_.format);
    if (isText()) std::cout << taken.plan;
    return State::Planned;
  }

  [[nodiscard]] client::ImageServiceSettings settings() {
    return {session_.host().installation.definitions, [this](double share) {
              progress_.show(share);
              return true;
            }};
  }

  [[nodiscard]] bool isText() const { return command_.format == PlanOutput::Text; }

  void tellOf(const Job& job) const {
    if (job.state == State::Failed) return tell(job.name + ": " + job.problem);
    if (!isText()) return;
    const std::string file = terminalText(job.job->file.string());
    if (job.state == State::Written) std::cout << "wrote " << file << std::endl;
    if (job.state == State::Skipped)
      std::cout << "kept " << file << ", which is written already" << std::endl;
  }

  [[nodiscard]] std::ptrdiff_t count(State state) const {
    return std::ranges::count(jobs_, state, &Job::state);
  }

  void tellSummary() const {
    if (!isText()) {
      std::cout << summaryJson();
    } else if (jobs_.size() > 1) {
      std::cout << summaryLine();
    }
  }

  [[nodiscard]] std::string summaryLine() const {
    std::string line = std::to_string(jobs_.size()) + " jobs:";
    std::string between = " ";
    for (const State state :
         {State::Planned, State::Written, State::Skipped, State::Failed, State::Unreadable, State::NotRun}) {
      if (count(state) == 0) continue;
      line += between + std::to_string(count(state)) + " " + wordOf(state);
      between = ", ";
    }
    return line + "\n";
  }

  [[nodiscard]] std::string summaryJson() const {
    using Json = nlohmann::ordered_json;
    Json all = Json::array();
    for (const Job& job : jobs_) {
      Json entry{{"job", job.name}, {"state", wordOf(job.state)}};
      if (job.job) entry["file"] = job.job->file.string();
      if (job.state == State::Written) entry["seconds"] = job.seconds;
      if (!job.plan.empty()) entry["plan"] = Json::parse(job.plan);
      if (!job.problem.empty()) entry["problem"] = client::textWithoutSecrets(job.problem);
      all.push_back(std::move(entry));
    }
    return Json{{"jobs", std::move(all)}}.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  }

  const JobsCommand& command_;
  const HeadlessSession& session_;
  const XmlService& xml_;
  JobLog log_;
  ProgressLine progress_;
  std::vector<Job> jobs_;
  std::map<std::filesystem::path, std::string> writers_;  ///< the job that writes a file
};

}  // namespace

int runJobs(const JobsCommand& command) {
  const HeadlessSession session;
  return Jobs(command, session).run();
}

}  // namespace vlclientui::vlhost
