#include "client/transport/ExchangeFaults.h"

#include <string>

namespace vlclientui::client {
namespace {

// Outcomes of the check as OpenSSL numbers them, which are the numbers of X.509.
constexpr long fine = 0;
constexpr long notReached = 1;
constexpr long notYetValid = 9;
constexpr long expired = 10;
constexpr long selfSigned = 18;
constexpr long selfSignedInChain = 19;
constexpr long issuerUnknown = 20;
constexpr long firstUnverified = 21;
constexpr long otherName = 62;
constexpr long otherNumber = 64;

std::string certificateReason(long verified) {
  switch (verified) {
    case notYetValid:
      return "is not valid yet";
    case expired:
      return "has expired";
    case selfSigned:
    case selfSignedInChain:
      return "is signed by itself, not by an authority that this system trusts";
    case issuerUnknown:
    case firstUnverified:
      return "comes from an authority that this system does not trust";
    case fine:
    case notReached:  // libcurl compares names before it asks how the check went
    case otherName:
    case otherNumber:
      return "is made out to another name";
    default:
      return "is not valid";
  }
}

HttpFailure certificateFailure(long verified, const std::string& host) {
  return {HttpFault::Certificate, "The certificate of " + host + " " + certificateReason(verified) + "."};
}

}  // namespace

HttpFailure timedOut(const Server& server) {
  return {HttpFault::TimedOut, server.shown() + " did not answer in time."};
}

HttpFailure canceled(const std::string& host) {
  return {HttpFault::Canceled, "The request to " + host + " was canceled."};
}

bool isPassingFault(CURLcode code) {
  switch (code) {
    case CURLE_COULDNT_CONNECT:
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_WRITE_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return true;
    default:
      return false;
  }
}

HttpFailure failureOf(CURLcode code, long verified, const Server& server) {
  const std::string host = server.shown();
  switch (code) {
    case CURLE_URL_MALFORMAT:
      return {HttpFault::BadAddress, "The address of " + host + " makes no sense."};
    case CURLE_COULDNT_RESOLVE_HOST:
      return {HttpFault::NoSuchHost, "There is no server named " + host + "."};
    case CURLE_COULDNT_RESOLVE_PROXY:
      return {HttpFault::NoSuchHost, "The proxy on the way to " + host + " was not found."};
    case CURLE_COULDNT_CONNECT:
      return {HttpFault::NoConnection, host + " does not take connections."};
    case CURLE_SSL_CONNECT_ERROR:
      return {HttpFault::NoConnection, "No secured connection to " + host + " could be made."};
    case CURLE_PROXY:
      return {HttpFault::NoConnection, "The proxy on the way to " + host + " refused the connection."};
    case CURLE_OPERATION_TIMEDOUT:
      return timedOut(server);
    case CURLE_PEER_FAILED_VERIFICATION:
      return certificateFailure(verified, host);
    case CURLE_SSL_CACERT_BADFILE:
      return {HttpFault::Certificate,
              "The certificates of this system, by which to check " + host + ", cannot be read."};
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return {HttpFault::BrokenOff, "The connection to " + host + " broke off."};
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_WRITE_ERROR:
      return {HttpFault::BrokenOff, "The answer of " + host + " came damaged."};
    case CURLE_FILESIZE_EXCEEDED:
      return {HttpFault::TooLarge, "The answer of " + host + " is too large."};
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
      return {HttpFault::Other, host + " does not answer as a web server."};
    default:
      return {HttpFault::Other, "The request to " + host + " failed: " + curl_easy_strerror(code) + "."};
  }
}

}  // namespace vlclientui::client
