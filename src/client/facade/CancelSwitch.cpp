#include "client/facade/CancelSwitch.h"

#include "client/waiting/Wait.h"

namespace vlclientui::client {

CancelSwitch::CancelSwitch() : token_(std::make_shared<CancelToken>()) {}

void CancelSwitch::cancel() const { token_->cancel(); }

bool CancelSwitch::isCanceled() const { return token_->isCanceled(); }

CancelScope::CancelScope(const CancelSwitch& canceling)
    : scope_(std::make_unique<WaitScope>(nullptr, *canceling.token_)) {}

CancelScope::~CancelScope() = default;

}  // namespace vlclientui::client
