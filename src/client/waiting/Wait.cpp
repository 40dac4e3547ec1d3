#include "client/waiting/Wait.h"

#include <algorithm>

namespace vlclientui::client {

struct WaitScope::State {
  WaitListener* listener = nullptr;
  WaitPace pace;
  std::vector<CancelToken> tokens;  ///< any of them ends the scope; the first one is its own
  std::chrono::steady_clock::duration waited{};
  std::chrono::steady_clock::time_point lastQuestion;
  int openWaits = 0;
  bool isAsking = false;
};

namespace {

thread_local WaitScope* innermost = nullptr;

}  // namespace

WaitScope::WaitScope(WaitListener* listener, CancelToken token, WaitPace pace)
    : state_(std::make_unique<State>()), outer_(innermost) {
  state_->listener = listener;
  state_->pace = pace;
  state_->tokens = {CancelToken(), std::move(token)};
  innermost = this;
}

WaitScope::WaitScope(const Link& link) : state_(std::make_unique<State>()), outer_(innermost) {
  state_->tokens = {CancelToken()};
  state_->tokens.insert(state_->tokens.end(), link.tokens_.begin(), link.tokens_.end());
  innermost = this;
}

WaitScope::~WaitScope() { innermost = outer_; }

WaitScope::Link WaitScope::link() {
  Link link;
  for (const WaitScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
    link.tokens_.insert(link.tokens_.end(), scope->state_->tokens.begin(), scope->state_->tokens.end());
  }
  return link;
}

bool WaitScope::isGivenUp() {
  for (const WaitScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
    const std::vector<CancelToken>& tokens = scope->state_->tokens;
    if (std::any_of(tokens.begin(), tokens.end(),
                    [](const CancelToken& token) { return token.isCanceled(); })) {
      return true;
    }
  }
  return false;
}

bool WaitScope::isUnder(const CancelToken& token) {
  for (const WaitScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
    const std::vector<CancelToken>& tokens = scope->state_->tokens;
    if (std::find(tokens.begin(), tokens.end(), token) != tokens.end()) return true;
  }
  return false;
}

Waiting::Waiting(std::function<void()> wake)
    : wake_(std::move(wake)), asked_(innermost), begin_(Clock::now()) {
  while (asked_ != nullptr && asked_->state_->listener == nullptr) asked_ = asked_->outer_;
  if (asked_ != nullptr) ++asked_->state_->openWaits;
  for (const WaitScope* scope = innermost; scope != nullptr; scope = scope->outer_) {
    for (const CancelToken& token : scope->state_->tokens) callbacks_.emplace_back(token.stopToken(), wake_);
  }
}

Waiting::~Waiting() {
  callbacks_.clear();
  // A wait inside another one, begun by a listener, is a part of that one.
  if (asked_ != nullptr && --asked_->state_->openWaits == 0) asked_->state_->waited += Clock::now() - begin_;
}

bool Waiting::isGivenUp() const { return WaitScope::isGivenUp(); }

std::chrono::milliseconds Waiting::waitedSoFar() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(asked_->state_->waited +
                                                               (Clock::now() - begin_));
}

std::optional<Waiting::Clock::time_point> Waiting::nextQuestion() const {
  if (asked_ == nullptr || asked_->state_->isAsking) return std::nullopt;
  const WaitScope::State& state = *asked_->state_;
  return std::max(begin_ + (state.pace.quiet - state.waited), state.lastQuestion + state.pace.interval);
}

void Waiting::ask(WaitedFor what) {
  const std::optional<Clock::time_point> due = nextQuestion();
  if (!due || Clock::now() < *due) return;
  WaitScope::State& state = *asked_->state_;
  what.waited = waitedSoFar();
  state.isAsking = true;
  const WaitAnswer answer = state.listener->stillWaiting(what);
  state.isAsking = false;
  state.lastQuestion = Clock::now();
  if (answer == WaitAnswer::GiveUp) state.tokens.front().cancel();
}

}  // namespace vlclientui::client
