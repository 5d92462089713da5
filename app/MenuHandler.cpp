#include "app/MenuHandler.h"

#include <utility>

#include "app/IDTExtensibility.h"
#include "app/LateBound.h"
#include "platform/ComObject.h"
#include "platform/Guarded.h"

namespace snip {

class MenuHandler::Sink final : public ComObject<CommandBarControlEvents, IDispatch> {
 public:
  explicit Sink(std::function<void()> click) : click_(std::move(click)) {}

  /// The environment may keep the sink for longer than its handler lives.
  void Silence() { click_ = nullptr; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** info) override {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* /*names*/, UINT /*count*/,
                                          LCID /*locale*/, DISPID* /*ids*/) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD /*kind*/,
                                   DISPPARAMS* /*parameters*/, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                                   UINT* /*badArgument*/) override {
    if (member != kClickEvent) return DISP_E_MEMBERNOTFOUND;
    // What the environment does on its own account stays as it is: "handled" and "cancel" are left alone.
    return GuardedMethod([this] {
      if (click_) click_();
    });
  }

 private:
  std::function<void()> click_;
};

MenuHandler::MenuHandler(ComPtr<IUnknown> events, std::function<void()> click)
    : events_(std::move(events)), sink_(new Sink(std::move(click))) {
  const auto container = events_.As<IConnectionPointContainer>();
  if (!container) ThrowIfFailed(E_NOINTERFACE);
  ThrowIfFailed(container->FindConnectionPoint(__uuidof(CommandBarControlEvents), point_.Put()));
  const HRESULT advised = point_->Advise(sink_.get(), &cookie_);
  // The environment may have kept the sink all the same.
  if (FAILED(advised)) sink_->Silence();
  ThrowIfFailed(advised);
}

MenuHandler::~MenuHandler() {
  sink_->Silence();
  point_->Unadvise(cookie_);
}

}  // namespace snip
