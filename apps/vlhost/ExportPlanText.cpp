#include "ExportPlanText.h"

#include <array>
#include <cmath>
#include <cstdio>

#include <nlohmann/json.hpp>

#include "Telling.h"

namespace vlclientui::vlhost {
namespace {

std::string fixed(double value, const char* unit) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.1f %s", value, unit);
  return text.data();
}

std::string duration(double seconds) {
  constexpr double minute = 60;
  if (seconds < minute) return fixed(seconds, "s");
  return seconds < minute * minute ? fixed(seconds / minute, "min") : fixed(seconds / minute / minute, "h");
}

std::string linesOf(const ExportPlanned& planned) {
  const client::ExportForecast& plan = planned.forecast;
  std::string text = planned.request + "\n";
  if (!planned.estimate.empty()) text += "Approx. MB: " + planned.estimate + "\n";
  if (plan.isRemote) {
    text += "Requests: " + std::to_string(plan.requests) + "\nTo fetch: about " +
            sizeText(plan.bytesToFetch) + ", as a sample tells\nTime to fetch: about " +
            duration(plan.seconds) + ", as a sample tells\n";
  }
  text += "To write: about " + sizeText(plan.bytesToWrite) + ", as a sample tells\n";
  if (plan.room) text += "Room: " + sizeText(*plan.room) + " in " + terminalText(plan.folder.string()) + "\n";
  if (plan.kept) text += "Kept of an unfinished export: " + sizeText(plan.kept->bytes) + "\n";
  for (const std::string& limit : plan.limits) text += "Limit: " + limit + "\n";
  return text + planned.job;
}

std::string jsonOf(const ExportPlanned& planned) {
  const client::ExportForecast& plan = planned.forecast;
  nlohmann::ordered_json object;
  object["request"] = planned.request;
  object["job"] = planned.job;
  if (!planned.estimate.empty()) object["approximateMegabytes"] = planned.estimate;
  object["remote"] = plan.isRemote;
  object["requests"] = plan.requests;
  object["bytesToFetch"] = plan.bytesToFetch;
  object["secondsToFetch"] = plan.seconds;
  object["bytesToWrite"] = plan.bytesToWrite;
  object["folder"] = plan.folder.string();
  if (plan.room) object["bytesFree"] = *plan.room;
  if (plan.kept) object["bytesKept"] = plan.kept->bytes;
  object["limits"] = plan.limits;
  return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string writtenJson(const std::filesystem::path& file, const std::string& job) {
  const nlohmann::ordered_json object{{"file", file.string()}, {"job", job}};
  return object.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string sizeText(std::uint64_t bytes) {
  constexpr std::uint64_t megabyte = std::uint64_t{1} << 20U;
  if (bytes < megabyte) return fixed(static_cast<double>(bytes) / 1024, "KB");
  return fixed(static_cast<double>(bytes) / megabyte, "MB");
}

std::string planText(const ExportPlanned& planned, PlanOutput output) {
  return output == PlanOutput::Json ? jsonOf(planned) : linesOf(planned);
}

}  // namespace vlclientui::vlhost
