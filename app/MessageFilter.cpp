#include "app/MessageFilter.h"

#include "platform/ComObject.h"

namespace snip {
namespace {

constexpr DWORD kGiveUp = static_cast<DWORD>(-1);

class Filter final : public ComObject<IMessageFilter> {
 public:
  DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD /*type*/, HTASK /*caller*/, DWORD /*elapsed*/,
                                             LPINTERFACEINFO /*info*/) override {
    return SERVERCALL_ISHANDLED;
  }
  DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK /*callee*/, DWORD elapsed, DWORD /*type*/) override {
    return elapsed < kBusyPatienceMs ? kBusyPauseMs : kGiveUp;
  }
  DWORD STDMETHODCALLTYPE MessagePending(HTASK /*callee*/, DWORD /*elapsed*/, DWORD /*type*/) override {
    return PENDINGMSG_WAITDEFPROCESS;
  }
};

}  // namespace

MessageFilter::MessageFilter() : filter_(new Filter) {
  CoRegisterMessageFilter(filter_.get(), nullptr);
}

MessageFilter::~MessageFilter() {
  CoRegisterMessageFilter(nullptr, nullptr);
}

}  // namespace snip
