#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "client/network/Coverages.h"

/// Parsers of what coverage services answer. They know documents alone, and fetch nothing.
namespace vlclientui::client {

class XmlTree;

/// Why a server did not give what was asked, in its own words or ours.
struct CoverageProblem {
  enum class Source { Answer, Silence };

  std::string code;  ///< as the server names it, such as "NoSuchCoverage"; empty where the words are ours
  std::string text;  ///< for a person
  Source source = Source::Answer;  ///< silence: nobody answered, or only that it fails just now
};

/// Whether a server refuses to give as many pixels as were asked for.
[[nodiscard]] bool isRefusedForSize(const CoverageProblem& problem);

/// A capabilities document of any version that is spoken. One of another version counts as the nearest one.
[[nodiscard]] std::variant<CoverageCapabilities, CoverageProblem> readCapabilities(std::string_view document);

/// The coverages that a description tells, in its order. What lacks its grid or lies turned is left out.
[[nodiscard]] std::variant<std::vector<CoverageDescription>, CoverageProblem> readDescriptions(
    std::string_view document, CoverageVersion version);

/// Where the image lies within an answer to a request for pixels: all of it, or one piece of several. A
/// document with an exception, whatever the status it came with, is a problem, and so is all else that is no
/// TIFF image.
[[nodiscard]] std::variant<std::string_view, CoverageProblem> readImage(std::string_view body,
                                                                        std::string_view type);

/// What a document of exceptions says; nothing for another document.
[[nodiscard]] std::optional<CoverageProblem> readException(std::string_view document);
[[nodiscard]] std::optional<CoverageProblem> exceptionIn(const XmlTree& document);

}  // namespace vlclientui::client
