#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "client/raster/LeftOut.h"
#include "client/stac/StacDocuments.h"
#include "client/stac/StacReader.h"
#include "client/transport/Http.h"

namespace vlclientui::client {

class Transport;

/// How far a catalogue is followed. What lies beyond is told as a problem.
struct StacLimits {
  std::size_t documents = 2000;  ///< of the tree of a server
  std::size_t depth = 8;         ///< of catalogues in catalogues
  std::size_t items = 10000;     ///< of one mosaic, and of one area of it
  std::size_t held = 40000;      ///< items of one mosaic of which areas were asked for
  std::size_t pages = 1000;      ///< of one list of items or collections
  std::uint64_t documentBytes = std::uint64_t{64} << 20U;
  std::uint64_t allBytes = std::uint64_t{1} << 30U;  ///< of all documents of one question
};

/// A document, and the address that its own addresses are seen from; never null.
struct StacPage {
  StacDocument document;
  std::shared_ptr<const std::string> base;
};

/// Fetches the documents of one question to one server, within limits. Blocks; belongs to one thread.
class StacFetcher {
 public:
  /// @param transport must outlive this object. @param address of the server that was named.
  StacFetcher(Transport& transport, const std::string& address, const StacLimits& limits);

  [[nodiscard]] OrStacProblem<StacPage> fetch(const std::string& address);
  /// The same also of a search that takes POST alone.
  [[nodiscard]] OrStacProblem<StacPage> fetchInAnyWay(const std::string& address);
  /// What was answered to a request for that address.
  [[nodiscard]] OrStacProblem<StacPage> read(const std::string& address, HttpResult&& result);

  /// All pages of a list, by their links to the next one. Ends early when `each` gives false.
  /// @returns why the list is not whole; nothing where it is, or was ended early.
  [[nodiscard]] std::optional<StacProblem> eachPage(const std::string& address,
                                                    const std::function<bool(StacPage&&)>& each);
  /// The same where the first page is at hand. It is asked for again, to be longer, where others follow.
  [[nodiscard]] std::optional<StacProblem> eachPage(StacPage&& first,
                                                    const std::function<bool(StacPage&&)>& each);

  /// What comes of documents that cannot be had just now, but maybe later.
  enum class Passing { IsLeftOut, EndsAll };
  /// Documents side by side, in any order; those that cannot be had become problems.
  /// @returns why it ended early, which a wait that was given up does as well; nothing where all were asked
  /// for.
  [[nodiscard]] std::optional<StacProblem> eachDocument(
      const std::vector<std::string>& addresses, Passing passing, std::vector<LeftOut>& problems,
      const std::function<void(std::size_t, StacPage&&)>& each);

  /// Where a link leads; a problem where that is another server: a catalogue that somebody else wrote may not
  /// send us around.
  [[nodiscard]] OrStacProblem<std::string> followed(const std::string& base,
                                                    const std::string& reference) const;

  [[nodiscard]] const StacLimits& limits() const { return limits_; }

 private:
  struct Request {
    std::string address;
    std::string body;  ///< posted where it is not empty
  };

  [[nodiscard]] OrStacProblem<Request> after(const StacPage& page, const Request& request) const;
  [[nodiscard]] HttpRequest requestFor(const std::string& address, const std::string& body) const;
  [[nodiscard]] OrStacProblem<StacPage> firstPage(Request& request);
  [[nodiscard]] OrStacProblem<StacPage> firstPosted(Request& request, const std::string& longer);
  [[nodiscard]] std::optional<StacProblem> eachPageFrom(Request at, StacPage&& page,
                                                        const std::function<bool(StacPage&&)>& each);

  Transport& transport_;
  std::string host_;
  StacLimits limits_;
  StacReader reader_;
  std::uint64_t bytes_ = 0;
};

/// For a list of what was left out: the address without secrets, and why.
[[nodiscard]] LeftOut leftOut(const std::string& address, const std::string& reason);

/// What is told of a list that is longer than is used of it.
[[nodiscard]] std::string tooManyItems(std::size_t limit);
/// Tells of items that a page held in no shape of one.
void tellDropped(std::vector<LeftOut>& problems, const StacPage& page);

/// The address of a list asks for pages of this length; a server that takes no such wish is asked without.
[[nodiscard]] std::string withPageLength(const std::string& address);

}  // namespace vlclientui::client
