#pragma once

#include <windows.h>
#include <ocidl.h>

#include "app/IDTExtensibility.h"
#include "platform/Com.h"
#include "platform/ComObject.h"

namespace snip {

/// Who is told of the choices of an entry of an environment's menus.
class ClickListener {
 public:
  /// Called while the environment waits; throws nothing.
  virtual void MenuHandler_Click() = 0;

 protected:
  ~ClickListener() = default;
};

/// What an environment tells them, by the interface `Events`.
template <class Events>
class ClickSink final : public WithoutTypeInfo<ComObject<Events, IDispatch>> {
 public:
  explicit ClickSink(ClickListener& listener) : listener_(&listener) {}

  /// The environment may keep the sink for longer than its listener lives.
  void Silence() { listener_ = nullptr; }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* /*names*/, UINT /*count*/,
                                          LCID /*locale*/, DISPID* /*ids*/) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID /*reserved*/, LCID /*locale*/, WORD /*kind*/,
                                   DISPPARAMS* /*parameters*/, VARIANT* /*result*/, EXCEPINFO* /*exception*/,
                                   UINT* /*badArgument*/) override {
    if (member != kClickEvent) return DISP_E_MEMBERNOTFOUND;
    // What the environment does on its own account stays as it is: "handled" and "cancel" are left alone.
    if (listener_ != nullptr) listener_->MenuHandler_Click();
    return S_OK;
  }

 private:
  ClickListener* listener_;
};

/// Has a listener told of an entry's choices as long as this lives. Throws nothing itself.
template <class Events>
class ClickSubscription {
 public:
  ClickSubscription() = default;
  ~ClickSubscription() { Stop(); }
  ClickSubscription(const ClickSubscription&) = delete;
  ClickSubscription& operator=(const ClickSubscription&) = delete;

  /// `source` tells the events; it is kept, for else they might end. Called once.
  HRESULT Start(IUnknown* source, ClickListener& listener) {
    source_ = ComPtr<IUnknown>::Share(source);
    const auto container = source_.As<IConnectionPointContainer>();
    if (!container) return E_NOINTERFACE;
    ComPtr<IConnectionPoint> point;
    const HRESULT found = container->FindConnectionPoint(__uuidof(Events), point.Put());
    if (FAILED(found)) return found;
    sink_.Reset(new ClickSink<Events>(listener));
    if (!sink_) return E_OUTOFMEMORY;
    const HRESULT advised = point->Advise(sink_.get(), &cookie_);
    if (SUCCEEDED(advised)) point_ = std::move(point);
    return advised;
  }

  /// Nothing more is told.
  void Stop() {
    // The environment may have kept the sink although it refused it.
    if (sink_) sink_->Silence();
    sink_.Reset();
    if (point_) point_->Unadvise(cookie_);
    point_.Reset();
    source_.Reset();
  }

 private:
  ComPtr<IUnknown> source_;
  ComPtr<IConnectionPoint> point_;  ///< Null unless it has taken the sink.
  ComPtr<ClickSink<Events>> sink_;
  DWORD cookie_ = 0;
};

}  // namespace snip
