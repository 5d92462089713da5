#include "platform/Registry32.h"

#include <algorithm>
#include <utility>

#include "platform/RegistryText.h"
#include "platform/Text.h"

namespace snip {
namespace {

/// Settings are short texts; a longer value is reported, not read.
constexpr DWORD kQueryBufferSize = 255;

const BYTE* Bytes(const std::string& text) {
  return reinterpret_cast<const BYTE*>(text.data());
}
BYTE* Bytes(std::string& text) {
  return reinterpret_cast<BYTE*>(text.data());
}

LONG WriteValue(const UniqueRegKey& key, const std::string& name, DWORD type, const std::string& data) {
  return RegSetValueExA(key.get(), name.c_str(), 0, type, Bytes(data), static_cast<DWORD>(data.size()));
}

}  // namespace

Registry32::Registry32(ShowMessageFunction showMessage) : showMessage_(std::move(showMessage)) {}

void Registry32::SaveRegSetting(const std::string& company, const std::string& application,
                                const std::string& section, const std::string& valueName,
                                const std::string& value) const {
  UniqueRegKey key = OpenRegKey(HKEY_CURRENT_USER, SettingsKeyPath(company, application, section), true);
  SetRegValue(value, key, valueName, REG_SZ);
  CloseRegKey(std::move(key));
}

std::string Registry32::GetRegSetting(const std::string& company, const std::string& application,
                                      const std::string& section, const std::string& valueName) const {
  UniqueRegKey key = OpenRegKey(HKEY_CURRENT_USER, SettingsKeyPath(company, application, section), true);
  DWORD type = REG_SZ;
  const std::string text = QueryRegValue(key, valueName, type);
  CloseRegKey(std::move(key));
  return std::string(Trim(text));
}

std::string Registry32::QueryRegString(HKEY root, const std::string& subKey, const std::string& valueName,
                                       const std::string& defaultText) const {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, subKey.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return defaultText;
  const UniqueRegKey key(opened);

  DWORD type = REG_NONE;
  DWORD size = 0;
  const LONG asked = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, nullptr, &size);
  const bool hasData = asked == ERROR_SUCCESS && size > 0;
  // A value without any data, not even a terminating zero, reads as one blank.
  std::string text(hasData ? size : 2, ' ');
  auto room = static_cast<DWORD>(text.size());
  if (RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, Bytes(text), &room) != ERROR_SUCCESS ||
      type != REG_SZ) {
    return defaultText;
  }
  text.pop_back();  // the terminating zero
  return text;
}

UniqueRegKey Registry32::OpenRegKey(HKEY root, const std::string& subKey, bool createIfMissing) const {
  HKEY key = nullptr;
  const LONG result = RegOpenKeyExA(root, subKey.c_str(), 0, KEY_ALL_ACCESS, &key);
  if (result == ERROR_FILE_NOT_FOUND && createIfMissing) return CreateRegKey(root, subKey);
  ReportRegError(result);
  return UniqueRegKey(result == ERROR_SUCCESS ? key : nullptr);
}

UniqueRegKey Registry32::CreateRegKey(HKEY root, const std::string& subKey) const {
  HKEY key = nullptr;
  DWORD disposition = 0;
  SECURITY_ATTRIBUTES security{};
  std::string noClass;
  const LONG result = RegCreateKeyExA(root, subKey.c_str(), 0, noClass.data(), REG_OPTION_NON_VOLATILE,
                                      KEY_ALL_ACCESS, &security, &key, &disposition);
  ReportRegError(result);
  return UniqueRegKey(result == ERROR_SUCCESS ? key : nullptr);
}

void Registry32::CloseRegKey(UniqueRegKey key) const {
  ReportRegError(RegCloseKey(key.Release()));
}

void Registry32::SetRegValue(const std::string& value, const UniqueRegKey& key, const std::string& valueName,
                             DWORD type, std::span<const std::string> extraStrings) const {
  switch (type) {
    case REG_SZ:
    case REG_EXPAND_SZ:
      ReportRegError(WriteValue(key, valueName, type, value + '\0'));
      return;
    case REG_DWORD: {
      const auto data = NumberValueData(value);
      ReportRegError(data ? WriteValue(key, valueName, type, *data) : ERROR_INVALID_PARAMETER);
      return;
    }
    case REG_MULTI_SZ:
      ReportRegError(WriteValue(key, valueName, type, MultiStringData(value, extraStrings)));
      return;
    default:
      showMessage_("Unable to process that type of data. Please contact KVR Development.", MessageStyle::kOk,
                   "");
  }
}

std::string Registry32::QueryRegValue(const UniqueRegKey& key, const std::string& valueName, DWORD& type,
                                      std::vector<std::string>* strings) const {
  const DWORD askedType = type;
  if (askedType != REG_SZ && askedType != REG_EXPAND_SZ && askedType != REG_BINARY &&
      askedType != REG_MULTI_SZ) {
    showMessage_("Unable to query that type of data. Please contact KVR Development.", MessageStyle::kOk, "");
    return {};
  }
  std::string buffer(kQueryBufferSize, ' ');
  DWORD size = kQueryBufferSize;
  const LONG result = RegQueryValueExA(key.get(), valueName.c_str(), nullptr, &type, Bytes(buffer), &size);
  ReportRegError(result);
  // Without a value the system need not leave the size as it was; with too long a one it is the value's.
  size = result == ERROR_SUCCESS ? std::min(size, kQueryBufferSize) : kQueryBufferSize;

  if (askedType == REG_BINARY) return StrToHex(std::string_view(buffer).substr(0, size));
  if (askedType == REG_MULTI_SZ) {
    if (strings != nullptr) *strings = SplitMultiString(buffer);
    return buffer.substr(0, buffer.find('\0'));
  }
  return buffer.substr(0, size == 0 ? 0 : size - 1);
}

void Registry32::ReportRegError(LONG code) const {
  if (const auto message = RegistryErrorMessage(code)) showMessage_(*message, MessageStyle::kOk, "");
}

}  // namespace snip
