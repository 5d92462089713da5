#include "platform/OleData.h"

#include <shlobj.h>

#include <utility>

#include "platform/GlobalMemory.h"
#include "platform/OleDataStore.h"
#include "platform/Shell.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

/// Owns what a data object handed out.
class StorageMedium {
 public:
  StorageMedium() = default;
  ~StorageMedium() { ReleaseStgMedium(&medium_); }
  StorageMedium(const StorageMedium&) = delete;
  StorageMedium& operator=(const StorageMedium&) = delete;

  STGMEDIUM* Put() { return &medium_; }
  HGLOBAL block() const { return medium_.tymed == TYMED_HGLOBAL ? medium_.hGlobal : nullptr; }

 private:
  STGMEDIUM medium_{};
};

/// With the zero that ends it.
std::string Utf16Bytes(const std::string& text) {
  const std::u16string wide = Utf16FromAnsi(text);
  return {reinterpret_cast<const char*>(wide.c_str()), (wide.size() + 1) * sizeof(char16_t)};
}

}  // namespace

OleData::OleData(ComPtr<IDataObject> object) : object_(std::move(object)) {}

OleData::OleData(ComPtr<Store> store)
    : object_(ComPtr<IDataObject>::Share(store.get())), store_(std::move(store)) {}

OleData::OleData(OleData&&) noexcept = default;
OleData& OleData::operator=(OleData&&) noexcept = default;
OleData::~OleData() = default;

bool OleData::GetFormat(CLIPFORMAT format) const {
  FORMATETC wanted = InMemory(format);
  return object_ && object_->QueryGetData(&wanted) == S_OK;
}

std::string OleData::GetText(CLIPFORMAT format) const {
  FORMATETC wanted = InMemory(format);
  StorageMedium medium;
  if (!object_ || FAILED(object_->GetData(&wanted, medium.Put()))) return {};
  const LockedGlobal data(medium.block());
  if (format == CF_UNICODETEXT) return AnsiFromUtf16(data.Utf16());
  return std::string(data.bytes().substr(0, data.bytes().find('\0')));
}

std::vector<std::string> OleData::Files() const {
  FORMATETC wanted = InMemory(CF_HDROP);
  StorageMedium medium;
  if (!object_ || FAILED(object_->GetData(&wanted, medium.Put())) || medium.block() == nullptr) return {};
  return DroppedFiles(static_cast<HDROP>(medium.block()));
}

bool OleData::SetText(const std::string& text, CLIPFORMAT format) {
  if (!store_) return false;
  store_->Set(format, format == CF_UNICODETEXT ? Utf16Bytes(text) : text + '\0');
  return true;
}

bool OleData::SetFiles(const std::vector<std::string>& names) {
  if (!store_) return false;
  if (names.empty()) {
    // Readers of a list take its first name for granted.
    store_->Remove(CF_HDROP);
    return true;
  }
  DROPFILES header{};
  header.pFiles = sizeof header;
  std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
  for (const std::string& name : names) bytes += name + '\0';
  store_->Set(CF_HDROP, bytes + '\0');
  return true;
}

bool OleData::Offer(CLIPFORMAT format) {
  if (!store_) return false;
  store_->Set(format, std::nullopt);
  return true;
}

bool OleData::Clear() {
  if (!store_) return false;
  store_->Clear();
  return true;
}

}  // namespace snip
