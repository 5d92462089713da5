#include "tests/host/ClickSource.h"

#include <utility>

#include "platform/ComObject.h"

namespace snip::test {
namespace {

class Point final : public ComObject<IConnectionPoint> {
 public:
  Point(CallWatch& watch, const IID& events, std::weak_ptr<Sinks> sinks)
      : watch_(watch), events_(events), sinks_(std::move(sinks)) {
    ++watch_.references;
  }
  ~Point() override { --watch_.references; }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* client, DWORD* cookie) override {
    const auto sinks = sinks_.lock();
    if (!sinks) return CONNECT_E_CANNOTCONNECT;
    if (const HRESULT failed = watch_.RunHook("Events.Advise"); FAILED(failed)) return failed;
    ComPtr<IDispatch> sink;
    // Where the events' interface cannot be passed between processes, plain late binding can.
    if (FAILED(client->QueryInterface(events_, sink.PutVoid())) &&
        FAILED(client->QueryInterface(__uuidof(IDispatch), sink.PutVoid()))) {
      return CONNECT_E_CANNOTCONNECT;
    }
    *cookie = ++lastCookie_;
    (*sinks)[*cookie] = std::move(sink);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
    const auto sinks = sinks_.lock();
    return sinks && sinks->erase(cookie) == 1 ? S_OK : CONNECT_E_NOCONNECTION;
  }
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 private:
  CallWatch& watch_;
  const IID events_;
  std::weak_ptr<Sinks> sinks_;
  DWORD lastCookie_ = 0;
};

class Source final : public ComObject<IConnectionPointContainer> {
 public:
  Source(CallWatch& watch, const IID& events) : watch_(watch), events_(events) { ++watch_.references; }
  ~Source() override { --watch_.references; }

  std::weak_ptr<Sinks> sinks() const { return sinks_; }

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** point) override {
    *point = nullptr;
    if (id != events_) return CONNECT_E_NOCONNECTION;
    *point = new Point(watch_, events_, sinks_);
    return S_OK;
  }

 private:
  CallWatch& watch_;
  const IID events_;
  std::shared_ptr<Sinks> sinks_ = std::make_shared<Sinks>();
};

}  // namespace

ComPtr<IUnknown> MakeClickSource(CallWatch& watch, const IID& events, std::weak_ptr<Sinks>& sinks) {
  ComPtr<Source> source(new Source(watch, events));
  sinks = source->sinks();
  return ComPtr<IUnknown>(source.Detach());
}

}  // namespace snip::test
