#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageRequests.h"
#include "client/network/Coverages.h"
#include "client/transport/Http.h"

namespace vlclientui::client {

class Transport;

template <class Answer>
using OrProblem = std::variant<Answer, CoverageProblem>;

/// Nobody answered, and why.
[[nodiscard]] CoverageProblem silenceOf(const HttpFailure& failure);

/// How the pixels of a coverage come: found by asking for some of them.
struct CoverageFormat {
  std::string name;      ///< as the server spells it
  std::string dataType;  ///< "Byte", "Float32" and so on
  int bandCount = 0;
  std::vector<std::optional<double>> noData;      ///< by band
  std::vector<std::string> colorInterpretations;  ///< by band
  int bytesOfPixel = 0;                           ///< all bands together
};

/// What to fetch in one go: a part of a coverage at some size.
struct CoveragePart {
  PixelWindow window;
  std::int64_t columns = 0;
  std::int64_t rows = 0;
};

/// One coverage service. Remembers what it told, until it is asked to look again. Any thread may ask.
class CoverageClient {
 public:
  /// @param transport must outlive this object. @param address of the service, with the parameters that
  /// belong to it.
  CoverageClient(Transport& transport, std::string address);

  enum class Freshness { Remembered, AskAgain };
  /// The best version that both speak. Titles that it lacks come from an older version, where that tells
  /// them.
  [[nodiscard]] OrProblem<std::shared_ptr<const CoverageCapabilities>> capabilities(Freshness freshness);

  /// In the order of the ids; null for one that the server does not describe, or not in a way that is
  /// understood.
  [[nodiscard]] std::vector<std::shared_ptr<const CoverageDescription>> describe(
      const std::vector<std::string>& ids);
  [[nodiscard]] OrProblem<std::shared_ptr<const CoverageDescription>> describe(const std::string& id);

  /// The format that brings the pixels as they are, found by a sample of each that is offered.
  [[nodiscard]] OrProblem<std::shared_ptr<const CoverageFormat>> format(const CoverageDescription& coverage);

  /// Images as bytes of a TIFF file, handed out as they come.
  /// @param each gets the part's index and its image, or why there is none; false gives up the rest.
  using Each = std::function<bool(std::size_t index, OrProblem<std::string>&& image)>;
  void fetch(const CoverageDescription& coverage, const CoverageFormat& format,
             const std::vector<CoveragePart>& parts, const Each& each);

  /// The TIFF file of one part, and how long it took.
  struct TimedImage {
    std::string image;
    double seconds = 0;
  };
  [[nodiscard]] OrProblem<TimedImage> fetchTimed(const CoverageDescription& coverage,
                                                 const CoverageFormat& format, const CoveragePart& part);
  /// What tells pixels of now from those of another day: what the server tells of the coverage, asked anew,
  /// and a few small windows of it.
  [[nodiscard]] OrProblem<std::string> fingerprint(const CoverageDescription& coverage,
                                                   const CoverageFormat& format);

  [[nodiscard]] const std::string& address() const { return address_; }
  /// Whether the server gives reductions.
  [[nodiscard]] bool canScale() { return told()->canScale; }
  /// Along each side of one request: fewer than at first, where the server refused that many.
  [[nodiscard]] int tilesAcross() const { return tilesAcross_; }
  void takeFewerTiles() { tilesAcross_ = std::max(1, tilesAcross_ / 2); }
  [[nodiscard]] bool isLimited() const { return tilesAcross_ < mostTilesAcross; }

 private:
  using Description = std::shared_ptr<const CoverageDescription>;

  [[nodiscard]] OrProblem<CoverageCapabilities> askVersions();
  [[nodiscard]] OrProblem<CoverageCapabilities> askCapabilities(std::optional<CoverageVersion> version);
  void addTitles(CoverageCapabilities& capabilities);
  void describeBatch(CoverageVersion version, const std::vector<std::string>& ids);
  [[nodiscard]] OrProblem<Description> describeAnew(const std::string& id);
  [[nodiscard]] Description known(const std::string& id);
  [[nodiscard]] OrProblem<std::vector<std::string>> formatNames(const CoverageDescription& coverage);
  [[nodiscard]] OrProblem<CoverageFormat> chooseFormat(const CoverageDescription& coverage);
  [[nodiscard]] HttpRequest pixels(const CoverageDescription& coverage, const CoveragePart& part,
                                   const std::string& format, int bytesOfPixel);
  [[nodiscard]] std::string addressFor(const std::string& told) const;
  [[nodiscard]] CoverageVersion version();
  [[nodiscard]] std::shared_ptr<const CoverageCapabilities> told();

  static constexpr int mostTilesAcross = 4;

  Transport& transport_;
  std::string address_;
  std::atomic<int> tilesAcross_ = mostTilesAcross;
  std::mutex mutex_;
  std::shared_ptr<const CoverageCapabilities> capabilities_;
  std::map<std::string, Description> descriptions_;
  std::map<std::string, std::shared_ptr<const CoverageFormat>> formats_;
};

/// The TIFF file in an answer to a request for pixels.
[[nodiscard]] OrProblem<std::string> imageOf(HttpResult&& result);

}  // namespace vlclientui::client
