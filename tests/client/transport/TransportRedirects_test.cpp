#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "client/transport/TransportFixture.h"

namespace vlclientui::client {
namespace {

using test::encoded;
using test::requestFor;
using testing::HasSubstr;
using testing::Not;

class TransportRedirects : public test::TransportFixture {
 protected:
  static std::string leadingTo(const std::string& address) {
    return "/fault/redirect=" + encoded(address) + "/a";
  }

  void giveCredentials() {
    const std::string whose = server().place();
    settings.credentials = [whose](const Server& server, const std::string& /*path*/) {
      if (server.shown() != whose || server.scheme != "http") return Credentials{};
      return Credentials{"ann", "pass", {{"X-Api-Key", "5ecret"}}, {}};
    };
  }
};

TEST_F(TransportRedirects, AreFollowedOnOneServerWithItsCredentials) {
  giveCredentials();
  const HttpAnswer answer = answerOf(server().address(leadingTo("/echo?x=1")));
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.address, server().address("/echo?x=1"));
  EXPECT_THAT(answer.body, HasSubstr("authorization: Basic"));
  EXPECT_THAT(answer.body, HasSubstr("x-api-key: 5ecret"));
}

TEST_F(TransportRedirects, TakeNoCredentialsToAnotherServer) {
  giveCredentials();
  HttpRequest request = requestFor(server().address(leadingTo(server().otherAddress("/echo"))));
  request.headers = {{"Authorization", "Bearer 0wn"}, {"X-Own-Key", "k2"}, {"Accept", "text/plain"}};
  const std::string echo = answerOf(request).body;
  for (const char* const word : {"authorization", "x-api-key", "x-own-key", "5ecret", "0wn"}) {
    EXPECT_THAT(echo, Not(HasSubstr(word)));
  }
  EXPECT_THAT(echo, HasSubstr("accept: text/plain"));
}

TEST_F(TransportRedirects, InACircleEnd) {
  settings.mostRedirects = 5;
  const HttpFailure failure = failureOf(server().address("/fault/loop/a"));
  EXPECT_EQ(failure.fault, HttpFault::TooManyRedirects);
  EXPECT_THAT(failure.text, HasSubstr(server().place()));
  EXPECT_EQ(server().counts().requests, 6U);
}

TEST_F(TransportRedirects, LeadToNoOtherKindOfAddress) {
  for (const char* const address : {"ftp://127.0.0.1/a", "file:///etc/passwd", "dict://127.0.0.1:11111/"}) {
    EXPECT_EQ(failureOf(server().address(leadingTo(address))).fault, HttpFault::NotAllowed) << address;
  }
}

TEST_F(TransportRedirects, LeadFromAPlainServerToASecuredOne) {
  auto& there = server(test::FaultProxy::Ports::Secured);
  const test::TemporaryVariable trusted("SSL_CERT_FILE", there.authority().c_str());
  writeFile("a.txt", "hello");
  const HttpAnswer answer = answerOf(there.address(leadingTo(there.securedAddress("/a.txt"))));
  EXPECT_EQ(answer.body, "hello");
  EXPECT_EQ(answer.address, there.securedAddress("/a.txt"));
}

TEST_F(TransportRedirects, TellTheLastAddressWithoutItsKeys) {
  writeFile("a.txt", "hello");
  const HttpAnswer answer =
      answerOf(server().address(leadingTo(server().otherAddress("/a.txt?sig=abc&x=1"))));
  EXPECT_EQ(answer.address, server().otherAddress("/a.txt?sig=***&x=1"));
}

TEST_F(TransportRedirects, KeepTheBodyOfAPostWhereTheyAreToldTo) {
  HttpRequest request = requestFor(server().address("/fault/as=307;redirect=%2Fecho/a"));
  request.body = "text";
  request.bodyType = "text/plain";
  EXPECT_THAT(answerOf(request).body, HasSubstr("POST /echo\n"));
  request.address = server().address("/fault/as=303;redirect=%2Fecho/a");
  EXPECT_THAT(answerOf(request).body, HasSubstr("GET /echo\n"));
}

}  // namespace
}  // namespace vlclientui::client
