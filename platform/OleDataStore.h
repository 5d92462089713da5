#pragma once

#include <windows.h>
#include <ole2.h>
#include <shlobj.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ComObject.h"
#include "platform/FlagScope.h"
#include "platform/GlobalMemory.h"
#include "platform/Guarded.h"
#include "platform/OleData.h"
#include "platform/OleDragSource.h"

namespace snip {

inline FORMATETC InMemory(CLIPFORMAT format) {
  return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// The data that this program drags.
class OleData::Store final : public ComObject<IDataObject> {
 public:
  explicit Store(std::weak_ptr<const OleDragEvents> events) : events_(std::move(events)) {}

  /// Formats that are only offered have no data yet.
  void Set(CLIPFORMAT format, std::optional<std::string> bytes) { formats_[format] = std::move(bytes); }
  void Remove(CLIPFORMAT format) { formats_.erase(format); }
  void Clear() { formats_.clear(); }
  void Disconnect() { events_.reset(); }

  HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
    if (format == nullptr || medium == nullptr) return E_POINTER;
    *medium = {};
    const HRESULT known = QueryGetData(format);
    if (known != S_OK) return known;
    return GuardedMethod([&]() -> HRESULT {
      AskFor(format->cfFormat);
      const auto found = formats_.find(format->cfFormat);
      if (found == formats_.end() || !found->second) return DV_E_FORMATETC;
      medium->hGlobal = MakeGlobal(*found->second).Release();
      medium->tymed = TYMED_HGLOBAL;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
    if (format == nullptr) return E_POINTER;
    if (!formats_.contains(format->cfFormat)) return DV_E_FORMATETC;
    if ((format->tymed & TYMED_HGLOBAL) == 0) return DV_E_TYMED;
    return format->dwAspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
  }
  HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* canonical) override {
    if (canonical == nullptr) return E_POINTER;
    canonical->ptd = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** result) override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (direction != DATADIR_GET) return E_NOTIMPL;
    return GuardedMethod([&] {
      std::vector<FORMATETC> all;
      for (const auto& [format, bytes] : formats_) all.push_back(InMemory(format));
      return SHCreateStdEnumFmtEtc(static_cast<UINT>(all.size()), all.data(), result);
    });
  }
  HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
    return OLE_E_ADVISENOTSUPPORTED;
  }
  HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
  HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

 private:
  /// Has data that are only offered brought, unless that is under way: who brings them may look at them.
  void AskFor(CLIPFORMAT format) {
    if (formats_.at(format) || asking_) return;
    const auto events = events_.lock();
    if (!events || !events->OLESetData) return;
    // Before the flag's owner, which writes to this object last.
    const auto self = ComPtr<Store>::Share(this);
    const FlagScope asking(asking_);
    OleData data(ComPtr<Store>::Share(this));
    events->OLESetData(data, format);
  }

  std::weak_ptr<const OleDragEvents> events_;
  std::map<CLIPFORMAT, std::optional<std::string>> formats_;
  bool asking_ = false;
};
#pragma GCC diagnostic pop

}  // namespace snip
