#include "JobLog.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "client/jobs/JobDocument.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::vlhost {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

/// Tells one text from another (FNV-1a).
std::string mark(const std::string& text) {
  std::uint64_t sum = 14695981039346656037U;
  for (const char character : text) sum = (sum ^ static_cast<unsigned char>(character)) * 1099511628211U;
  std::array<char, 24> written{};
  std::snprintf(written.data(), written.size(), "%016llx", static_cast<unsigned long long>(sum));
  return written.data();
}

/// Empty where the line has none.
std::string valueIn(const std::string& line, const char* name) {
  const Json entry = Json::parse(line, nullptr, false);
  if (!entry.is_object() || !entry.contains(name) || !entry[name].is_string()) return {};
  return entry[name].get<std::string>();
}

/// A name as the log holds it, where bytes that are no text have a sign in their place.
std::string shown(const std::string& name) {
  return Json::parse(Json(name).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

}  // namespace

JobLog::JobLog(fs::path file, const XmlService& xml) : file_(std::move(file)), xml_(xml) {
  if (file_.empty()) return;
  read();
  append({});
}

void JobLog::read() {
  std::error_code error;
  if (!fs::exists(file_, error) && !error) return;
  std::ifstream stream(file_);
  std::string line;
  while (std::getline(stream, line)) {
    isTorn_ = stream.eof();
    if (const std::string written = valueIn(line, "file"); !written.empty()) lines_[written] = line;
  }
  if (error || fs::is_directory(file_, error) || !stream.eof())
    throw RuntimeFailure("the log '" + file_.string() + "' cannot be read");
}

// Empty where the file is not there.
std::string JobLog::lineOf(const client::ExportJob& job, const std::string& inputs) const {
  std::error_code error;
  const auto size = fs::file_size(job.file, error);
  if (error) return {};
  const auto modified = fs::last_write_time(job.file, error).time_since_epoch().count();
  const Json entry{{"file", job.file.string()},
                   {"job", mark(client::jobDocument(job, xml_))},
                   {"inputs", inputs},
                   {"bytes", size},
                   {"modified", static_cast<std::int64_t>(modified)}};
  return entry.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool JobLog::isDone(const client::ExportJob& job, const Inputs& inputs) const {
  const auto found = lines_.find(shown(job.file.string()));
  if (found == lines_.end()) return false;
  const std::string former = valueIn(found->second, "inputs");
  return found->second == lineOf(job, former) && !former.empty() && inputs(job) == former;
}

void JobLog::add(const client::ExportJob& job, const std::string& inputs) {
  if (!isKept()) return;
  const std::string line = lineOf(job, inputs);
  lines_[shown(job.file.string())] = line;
  // A line that was cut off would swallow this one.
  append((std::exchange(isTorn_, false) ? "\n" : "") + line + "\n");
}

// One write, at the end of the file whoever else adds to it.
void JobLog::append(const std::string& text) const {
  std::FILE* const stream = std::fopen(file_.c_str(), "ae");
  const bool isWritten = stream != nullptr && std::fputs(text.c_str(), stream) >= 0;
  const bool isClosed = stream != nullptr && std::fclose(stream) == 0;
  if (!isWritten || !isClosed) throw RuntimeFailure("the log '" + file_.string() + "' cannot be written");
}

}  // namespace vlclientui::vlhost
