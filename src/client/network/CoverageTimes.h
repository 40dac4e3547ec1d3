#pragma once

#include <optional>
#include <string_view>

#include "client/network/Coverages.h"

namespace vlclientui::client {

class XmlElement;

/// Dates of a document, joined to the span from the first to the last of them. What is no date counts not.
class DateSpan {
 public:
  void addMoment(std::string_view text);
  /// An end that is no date is an open one.
  void addPeriod(std::string_view begin, std::string_view end);
  /// All moments and periods within an element, however deep.
  void addAllWithin(const XmlElement& element);
  /// The same of those elements within that tell when pixels were taken, and not when something was written.
  void addTakenWithin(const XmlElement& element);

  /// Nothing where there was none.
  [[nodiscard]] const std::optional<CoverageDates>& dates() const { return dates_; }

 private:
  void add(const CoverageDates& span);

  std::optional<CoverageDates> dates_;
};

}  // namespace vlclientui::client
