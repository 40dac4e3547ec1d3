#include "client/facade/ServerWait.h"

#include <utility>

#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

class Listener final : public WaitListener {
 public:
  explicit Listener(WaitQuestion question) : question_(std::move(question)) {}

  WaitAnswer stillWaiting(const WaitedFor& what) override {
    return question_({what.host, what.bytes, what.waited}) ? WaitAnswer::GoOn : WaitAnswer::GiveUp;
  }

 private:
  WaitQuestion question_;
};

}  // namespace

struct ServerWaitScope::Parts {
  explicit Parts(WaitQuestion question) : listener(std::move(question)), scope(&listener) {}

  Listener listener;
  WaitScope scope;
};

ServerWaitScope::ServerWaitScope(const WaitQuestions& questions) {
  WaitQuestion question = questions ? questions() : WaitQuestion();
  if (question) parts_ = std::make_unique<Parts>(std::move(question));
}

ServerWaitScope::~ServerWaitScope() = default;

}  // namespace vlclientui::client
