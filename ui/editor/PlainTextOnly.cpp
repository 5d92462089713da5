#include "ui/editor/PlainTextOnly.h"

#include <array>

namespace snip {
namespace {

constexpr std::array<CLIPFORMAT, 2> kTextFormats = {CF_UNICODETEXT, CF_TEXT};

}  // namespace

HRESULT PlainTextOnly::GetNewStorage(LPSTORAGE* storage) noexcept {
  if (storage != nullptr) *storage = nullptr;
  return E_NOTIMPL;
}

HRESULT PlainTextOnly::GetInPlaceContext(LPOLEINPLACEFRAME* /*frame*/, LPOLEINPLACEUIWINDOW* /*document*/,
                                         LPOLEINPLACEFRAMEINFO /*info*/) noexcept {
  return E_NOTIMPL;
}

HRESULT PlainTextOnly::ShowContainerUI(WINBOOL /*show*/) noexcept {
  return E_NOTIMPL;
}

HRESULT PlainTextOnly::QueryInsertObject(LPCLSID /*id*/, LPSTORAGE /*storage*/, LONG /*place*/) noexcept {
  return E_FAIL;
}

HRESULT PlainTextOnly::DeleteObject(LPOLEOBJECT /*object*/) noexcept {
  return S_OK;
}

HRESULT PlainTextOnly::QueryAcceptData(LPDATAOBJECT data, CLIPFORMAT* format, DWORD /*operation*/,
                                       WINBOOL /*really*/, HGLOBAL /*picture*/) noexcept {
  if (data == nullptr || format == nullptr) return E_POINTER;
  for (const CLIPFORMAT text : kTextFormats) {
    FORMATETC wanted{text, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    if (data->QueryGetData(&wanted) != S_OK) continue;
    *format = text;
    return S_OK;
  }
  return DATA_E_FORMATETC;
}

HRESULT PlainTextOnly::ContextSensitiveHelp(WINBOOL /*enter*/) noexcept {
  return S_OK;
}

HRESULT PlainTextOnly::GetClipboardData(CHARRANGE* /*range*/, DWORD /*operation*/,
                                        LPDATAOBJECT* /*data*/) noexcept {
  return E_NOTIMPL;  // what the control itself puts there will do
}

HRESULT PlainTextOnly::GetDragDropEffect(WINBOOL /*drag*/, DWORD /*keys*/, LPDWORD /*effect*/) noexcept {
  return E_NOTIMPL;  // copying and moving, as the keys say; a read-only control only copies
}

HRESULT PlainTextOnly::GetContextMenu(WORD /*selectionType*/, LPOLEOBJECT /*object*/, CHARRANGE* /*range*/,
                                      HMENU* menu) noexcept {
  if (menu != nullptr) *menu = nullptr;
  return E_NOTIMPL;
}

}  // namespace snip
