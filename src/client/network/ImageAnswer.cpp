#include "client/network/CoverageAnswers.h"
#include "client/network/FileContent.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// "multipart/mixed; boundary=wcs", the boundary with or without quotes.
std::string boundaryOf(std::string_view type) {
  constexpr std::string_view word = "boundary=";
  const std::size_t at = lowered(type).find(word);
  if (at == std::string::npos) return {};
  std::string_view rest = type.substr(at + word.size());
  if (rest.starts_with('"')) return std::string(rest.substr(1, rest.find('"', 1) - 1));
  return trimmed(rest.substr(0, rest.find(';')));
}

std::size_t endOfHeaders(std::string_view piece) {
  const std::size_t dos = piece.find("\r\n\r\n");
  const std::size_t unix = piece.find("\n\n");
  if (dos != std::string_view::npos && (unix == std::string_view::npos || dos < unix)) return dos + 4;
  return unix == std::string_view::npos ? unix : unix + 2;
}

// The pixels may hold the boundary's bytes by chance, but not with a line end before it.
std::string_view imagePiece(std::string_view body, const std::string& boundary) {
  const std::string mark = "--" + boundary;
  std::size_t at = body.find(mark);
  while (at != std::string_view::npos) {
    const std::string_view piece = body.substr(at + mark.size());
    const std::size_t content = endOfHeaders(piece);
    if (content != std::string_view::npos && isTiff(piece.substr(content))) {
      const std::size_t begin = at + mark.size() + content;
      return body.substr(begin, body.substr(begin).find("\n" + mark));
    }
    const std::size_t next = body.find("\n" + mark, at + mark.size());
    at = next == std::string_view::npos ? next : next + 1;
  }
  return {};
}

std::string typeForPeople(std::string_view type) {
  const std::string plain = trimmed(type.substr(0, type.find(';')));
  return plain.empty() ? "something of an unknown kind" : plain;
}

}  // namespace

bool isRefusedForSize(const CoverageProblem& problem) {
  return problem.code == "InvalidParameterValue" || lowered(problem.text).find("size") != std::string::npos;
}

std::variant<std::string_view, CoverageProblem> readImage(std::string_view body, std::string_view type) {
  if (isTiff(body)) return body;
  if (startsIgnoringCase(trimmed(type), "multipart/")) {
    const std::string_view piece = imagePiece(body, boundaryOf(type));
    if (!piece.empty()) return piece;
  }
  if (auto problem = readException(body)) return *std::move(problem);
  return CoverageProblem{"",
                         "the server answers with " + typeForPeople(type) + " where an image was asked for"};
}

}  // namespace vlclientui::client
