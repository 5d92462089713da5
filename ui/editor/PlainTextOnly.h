#pragma once

#include <windows.h>
#include <ole2.h>
#include <richole.h>

#include "platform/ComObject.h"

__CRT_UUID_DECL(IRichEditOleCallback, 0x00020D03, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46)

namespace snip {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// Tells a rich-edit control to take text alone from the clipboard and from drags, and to show no menu.
class PlainTextOnly final : public ComObject<IRichEditOleCallback> {
 public:
  HRESULT STDMETHODCALLTYPE GetNewStorage(LPSTORAGE* storage) noexcept override;
  HRESULT STDMETHODCALLTYPE GetInPlaceContext(LPOLEINPLACEFRAME* frame, LPOLEINPLACEUIWINDOW* document,
                                              LPOLEINPLACEFRAMEINFO info) noexcept override;
  HRESULT STDMETHODCALLTYPE ShowContainerUI(WINBOOL show) noexcept override;
  HRESULT STDMETHODCALLTYPE QueryInsertObject(LPCLSID id, LPSTORAGE storage, LONG place) noexcept override;
  HRESULT STDMETHODCALLTYPE DeleteObject(LPOLEOBJECT object) noexcept override;
  HRESULT STDMETHODCALLTYPE QueryAcceptData(LPDATAOBJECT data, CLIPFORMAT* format, DWORD operation,
                                            WINBOOL really, HGLOBAL picture) noexcept override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(WINBOOL enter) noexcept override;
  HRESULT STDMETHODCALLTYPE GetClipboardData(CHARRANGE* range, DWORD operation,
                                             LPDATAOBJECT* data) noexcept override;
  HRESULT STDMETHODCALLTYPE GetDragDropEffect(WINBOOL drag, DWORD keys, LPDWORD effect) noexcept override;
  HRESULT STDMETHODCALLTYPE GetContextMenu(WORD selectionType, LPOLEOBJECT object, CHARRANGE* range,
                                           HMENU* menu) noexcept override;
};
#pragma GCC diagnostic pop

}  // namespace snip
