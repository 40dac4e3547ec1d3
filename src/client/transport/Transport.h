#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "client/transport/Http.h"
#include "client/transport/TransportSettings.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

class TransferThread;

/// What came over the network so far.
struct Traffic {
  std::uint64_t requests = 0;  ///< that were answered
  std::uint64_t bytes = 0;     ///< of the answers, unpacked
};

/// Requests to web servers, over connections that are kept, compressed, with the certificates and proxies of
/// the system, within limits of time and size. What failed for a passing reason is tried again; what cannot
/// be had comes back as a failure with a sentence for a person.
///
/// Any thread may ask, several at a time. A call blocks until its answers are there, and honors the WaitScope
/// of its thread. All transfers run on one thread that belongs to the object; it starts with the first
/// request. A process that is forked later has another one, with connections of its own.
class Transport {
 public:
  /// Starts nothing yet. @param settings hold for all requests.
  explicit Transport(TransportSettings settings = {});
  Transport(const Transport&) = delete;
  Transport& operator=(const Transport&) = delete;
  /// Ends what is underway. No call may be running.
  ~Transport();

  /// Makes one request and waits for its answer.
  [[nodiscard]] HttpResult fetch(const HttpRequest& request);

  /// Answers in the order of the requests.
  /// @param requests in any number. @param atATime requests underway, at least 1; the limits of the settings
  /// hold besides.
  [[nodiscard]] std::vector<HttpResult> fetchAll(const std::vector<HttpRequest>& requests,
                                                 std::size_t atATime);

  /// Each answer as it comes, with the index of its request.
  using Each = std::function<bool(std::size_t index, HttpResult&& result)>;
  /// Hands out one answer for each request, in any order, on the calling thread. When it gives false, or
  /// raises, the rest is given up and not told any more.
  void fetchEach(const std::vector<HttpRequest>& requests, std::size_t atATime, const Each& each);
  /// Of all requests since the object was made.
  [[nodiscard]] Traffic traffic() const { return {requests_, bytes_}; }

 private:
  [[nodiscard]] TransferThread& threadOfThisProcess();

  std::atomic<std::uint64_t> requests_ = 0;
  std::atomic<std::uint64_t> bytes_ = 0;
  std::shared_ptr<const TransportSettings> settings_;
  std::atomic<TransferThread*> thread_;  ///< owned where it is of this process
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
