#include "platform/Com.h"

#include <new>

#include "platform/ComObject.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

/// An object that has an interface and is never called.
class Placeholder final : public ComObject<IUnknown> {
 public:
  explicit Placeholder(REFIID iid) : iid_(iid) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    return ComObject::QueryInterface(iid == iid_ ? __uuidof(IUnknown) : iid, object);
  }

 private:
  const IID iid_;
};

}  // namespace

KeptInterfaces::KeptInterfaces(std::initializer_list<IID> interfaces) {
  for (const IID& iid : interfaces) {
    const ComPtr<IUnknown> placeholder(new Placeholder(iid));
    ComPtr<IStream> reference;
    // A strong reference that nobody takes: COM lets go of it with the apartment.
    if (SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, reference.Put())))
      CoMarshalInterface(reference.get(), iid, placeholder.get(), MSHCTX_LOCAL, nullptr,
                         MSHLFLAGS_TABLESTRONG);
  }
}

Bstr::Bstr(const std::string& text) : Bstr(Utf16FromAnsi(text)) {}

Bstr::Bstr(std::u16string_view text)
    : text_(
          SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()), static_cast<UINT>(text.size()))) {
  if (text_ == nullptr) throw std::bad_alloc();
}

std::string Bstr::Text() const {
  return AnsiFromUtf16({reinterpret_cast<const char16_t*>(text_), SysStringLen(text_)});
}

}  // namespace snip
