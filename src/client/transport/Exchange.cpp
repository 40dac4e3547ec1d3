#include "client/transport/Exchange.h"

#include <algorithm>
#include <new>

#include "client/transport/ExchangeFaults.h"
#include "client/transport/HttpText.h"

namespace vlclientui::client {
namespace {

constexpr long keepAliveSeconds = 30;
constexpr long connectionAgeSeconds = 60;
constexpr long bufferBytes = 256 * 1024;
constexpr std::uint64_t mostReserved = std::uint64_t{64} << 20U;

// "bytes 0-99/1000"
std::optional<ByteRange> toldRange(std::string_view text) {
  constexpr std::string_view unit = "bytes ";
  const std::size_t dash = text.find('-');
  const std::size_t slash = text.find('/');
  if (!text.starts_with(unit) || dash == std::string_view::npos || slash < dash) return std::nullopt;
  const auto first = wholeNumber(text.substr(unit.size(), dash - unit.size()));
  const auto last = wholeNumber(text.substr(dash + 1, std::min(slash, text.size()) - dash - 1));
  if (!first || !last || *last < *first) return std::nullopt;
  return ByteRange{*first, *last};
}

// libcurl tells of it as of a connection that broke.
bool hasProxyRefused(CURL* easy) {
  constexpr long firstRefusal = 300;
  long status = 0;
  curl_easy_getinfo(easy, CURLINFO_HTTP_CONNECTCODE, &status);
  return status >= firstRefusal;
}

}  // namespace

bool isSound(const HttpHeader& header) {
  const auto isControl = [](char letter) {
    return (letter >= 0 && letter < ' ' && letter != '\t') || letter == '\x7f';
  };
  return !header.name.empty() && header.name.find_first_of(": \t") == std::string::npos &&
         std::none_of(header.name.begin(), header.name.end(), isControl) &&
         std::none_of(header.value.begin(), header.value.end(), isControl);
}

Exchange::Exchange(ExchangePlan plan, std::shared_ptr<std::atomic<std::uint64_t>> received, CURLSH* shared)
    : plan_(std::move(plan)),
      received_(std::move(received)),
      easy_(curl_easy_init()),
      lastByte_(Clock::now()) {
  if (easy_) setUp(shared);
}

void Exchange::setUp(CURLSH* shared) {
  CURL* const easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_URL, plan_.address.c_str());
  curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
  curl_easy_setopt(easy, CURLOPT_SHARE, shared);
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  // A redirect is followed as an exchange of its own; libcurl would take headers with keys along.
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  curl_easy_setopt(easy, CURLOPT_USERAGENT, plan_.agent.c_str());
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  // Leaves a search for a name that nobody waits for to itself; otherwise all transfers would wait for its
  // end.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, bufferBytes);
  curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  curl_easy_setopt(easy, CURLOPT_TCP_KEEPIDLE, keepAliveSeconds);
  curl_easy_setopt(easy, CURLOPT_MAXAGE_CONN, connectionAgeSeconds);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(plan_.limits.connecting.count()));
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Exchange::takeBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Exchange::takeHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  // A length that is told beforehand ends the transfer before its first byte.
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(plan_.mostBytes));
  setUpRequest();
  setUpTrust();
}

void Exchange::setUpRequest() {
  CURL* const easy = easy_.get();
  for (const HttpHeader& header : plan_.headers) addHeader(header.name + ": " + header.value);
  if (plan_.range) {
    // Bytes of a compressed file would be of no use.
    const std::string range = std::to_string(plan_.range->first) + "-" + std::to_string(plan_.range->second);
    curl_easy_setopt(easy, CURLOPT_RANGE, range.c_str());
  } else {
    curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
  }
  if (!plan_.body.empty()) {
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(plan_.body.size()));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, plan_.body.c_str());
    addHeader("Content-Type: " + plan_.bodyType);
    addHeader("Expect:");
  }
  if (!plan_.user.empty() || !plan_.password.empty()) {
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC));
    curl_easy_setopt(easy, CURLOPT_USERNAME, plan_.user.c_str());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, plan_.password.c_str());
  }
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headerList_.get());
}

void Exchange::setUpTrust() {
  const TrustedCertificates& trusted = plan_.trusted;
  if (!trusted.file.empty()) curl_easy_setopt(easy_.get(), CURLOPT_CAINFO, trusted.file.c_str());
  if (!trusted.folder.empty()) curl_easy_setopt(easy_.get(), CURLOPT_CAPATH, trusted.folder.c_str());
}

void Exchange::addHeader(const std::string& line) {
  curl_slist* const longer = curl_slist_append(headerList_.get(), line.c_str());
  if (longer == nullptr) return;
  static_cast<void>(headerList_.release());
  headerList_.reset(longer);
}

// Nothing may be raised through libcurl; without memory for it an answer is too large.
std::size_t Exchange::take(bool (Exchange::*keep)(std::string_view), void* exchange, std::string_view bytes) {
  auto* const self = static_cast<Exchange*>(exchange);
  try {
    return (self->*keep)(bytes) ? bytes.size() : 0;
  } catch (const std::bad_alloc&) {
    self->isTooLarge_ = true;
    return 0;
  }
}

std::size_t Exchange::takeBody(char* bytes, std::size_t size, std::size_t count, void* exchange) {
  return take(&Exchange::keepBody, exchange, {bytes, size * count});
}

std::size_t Exchange::takeHeader(char* bytes, std::size_t size, std::size_t count, void* exchange) {
  return take(&Exchange::keepHeader, exchange, {bytes, size * count});
}

// The one place that counts what was decoded: no length that a server tells can be believed.
bool Exchange::keepBody(std::string_view bytes) {
  lastByte_ = Clock::now();
  isTooLarge_ = bytes.size() > plan_.mostBytes - answer_.body.size();
  if (isTooLarge_) return false;
  answer_.body.append(bytes);
  *received_ += bytes.size();
  return true;
}

bool Exchange::keepHeader(std::string_view line) {
  lastByte_ = Clock::now();
  headerBytes_ += line.size();
  isTooLarge_ = headerBytes_ > plan_.mostHeaderBytes;
  if (isTooLarge_) return false;
  // Another answer after an interim one.
  if (line.starts_with("HTTP/")) answer_.headers.clear();
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos || line.starts_with("HTTP/")) return true;
  const HttpHeader header{std::string(withoutBlanks(line.substr(0, colon))),
                          std::string(withoutBlanks(line.substr(colon + 1)))};
  if (isSameWord(header.name, "Content-Length")) {
    // Asked for at once where the answer is as long as it says; memory that is not written to costs nothing.
    answer_.body.reserve(std::min({wholeNumber(header.value).value_or(0), plan_.mostBytes, mostReserved}));
  }
  answer_.headers.push_back(header);
  return true;
}

bool Exchange::isWholeRange() const {
  constexpr int partialContent = 206;
  if (answer_.status != partialContent || !plan_.range) return true;
  const std::optional<ByteRange> told = toldRange(answer_.header("Content-Range"));
  return told && told->first == plan_.range->first && told->second <= plan_.range->second &&
         answer_.body.size() == told->second - told->first + 1;
}

ExchangeOutcome Exchange::finish(CURLcode code) {
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  answer_.status = static_cast<int>(status);
  if (isTooLarge_) code = CURLE_FILESIZE_EXCEEDED;
  if (hasProxyRefused(easy_.get())) code = CURLE_PROXY;
  if (code == CURLE_OK && !isWholeRange()) code = CURLE_PARTIAL_FILE;
  ExchangeOutcome outcome;
  if (code == CURLE_OK) {
    outcome.answer = std::move(answer_);
    return outcome;
  }
  long verified = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_SSL_VERIFYRESULT, &verified);
  outcome.failure = failureOf(code, verified, plan_.server);
  outcome.isPassing = isPassingFault(code);
  outcome.isUnsent = code == CURLE_COULDNT_CONNECT;
  return outcome;
}

}  // namespace vlclientui::client
