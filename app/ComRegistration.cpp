#include "app/ComRegistration.h"

#include <objbase.h>

#include <algorithm>
#include <array>
#include <vector>

#include "app/AddInIdentity.h"
#include "platform/Com.h"
#include "platform/Handle.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

constexpr const char* kClassIdsKey = "CLSID";

std::string ClassIdText() {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(kConnectClassId, text.data(), static_cast<int>(text.size()));
  return {text.begin(), text.end() - 1};  // digits and punctuation
}

/// A key and its default value.
struct Entry {
  std::string key;
  std::string text;
};

/// A key stands before those below it.
std::vector<Entry> Entries(const std::string& program) {
  const std::string progId = kAddInProgId;
  const std::string classKey = std::string(kClassIdsKey) + "\\" + ClassIdText();
  return {{progId, kAddInName},
          {progId + "\\CLSID", ClassIdText()},
          {classKey, kAddInName},
          // Blanks in the path would end it otherwise.
          {classKey + "\\LocalServer32", "\"" + program + "\""},
          {classKey + "\\ProgID", progId},
          {classKey + "\\Programmable", ""}};
}

bool Write(HKEY classes, const Entry& entry) {
  HKEY opened = nullptr;
  if (RegCreateKeyExA(classes, entry.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr,
                      &opened, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const UniqueRegKey key(opened);
  return entry.text.empty() ||
         RegSetValueExA(key.get(), nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(entry.text.c_str()),
                        static_cast<DWORD>(entry.text.size() + 1)) == ERROR_SUCCESS;
}

UniqueRegKey OpenClasses(HKEY root, REGSAM access) {
  HKEY opened = nullptr;
  RegOpenKeyExA(root, "Software\\Classes", 0, access, &opened);
  return UniqueRegKey(opened);
}

bool Exists(HKEY classes, const std::string& key) {
  HKEY opened = nullptr;
  const LONG result = RegOpenKeyExA(classes, key.c_str(), 0, KEY_READ, &opened);
  const UniqueRegKey owner(opened);
  return result != ERROR_FILE_NOT_FOUND;
}

bool IsEmpty(HKEY classes, const char* key) {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(classes, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
  const UniqueRegKey owner(opened);
  DWORD keys = 0;
  DWORD values = 0;
  return RegQueryInfoKeyA(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                          nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         keys == 0 && values == 0;
}

}  // namespace

bool RegisterClass(HKEY classes, const std::string& program) {
  const std::vector<Entry> entries = Entries(program);
  const bool isNew = !Exists(classes, entries.front().key);
  const bool written = std::all_of(entries.begin(), entries.end(),
                                   [classes](const Entry& entry) { return Write(classes, entry); });
  if (!written && isNew) UnregisterClass(classes);  // an earlier registration is better than none
  return written;
}

bool UnregisterClass(HKEY classes) {
  const std::vector<Entry> entries = Entries("");
  // From the innermost: a key that holds something of others is not deleted.
  std::for_each(entries.rbegin(), entries.rend(),
                [classes](const Entry& entry) { RegDeleteKeyA(classes, entry.key.c_str()); });
  // A user who has no classes of his own has no such key either.
  if (IsEmpty(classes, kClassIdsKey)) RegDeleteKeyA(classes, kClassIdsKey);
  return std::none_of(entries.begin(), entries.end(),
                      [classes](const Entry& entry) { return Exists(classes, entry.key); });
}

std::array<HKEY, 2> RegistrationRoots() {
  return {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
}

bool RegisterServer(std::span<const HKEY> roots) {
  const auto taken = std::find_if(roots.begin(), roots.end(), [](HKEY root) {
    const UniqueRegKey classes = OpenClasses(root, KEY_READ | KEY_WRITE);
    return classes && RegisterClass(classes.get(), ProgramPath());
  });
  if (taken == roots.end()) return false;
  // What an earlier registration left for the user would hide this one.
  UnregisterServer(roots.subspan(static_cast<std::size_t>(taken - roots.begin()) + 1));
  return true;
}

bool UnregisterServer(std::span<const HKEY> roots) {
  // Each of them, whether or not another one fails.
  return std::count_if(roots.begin(), roots.end(), [](HKEY root) {
           const UniqueRegKey classes = OpenClasses(root, KEY_READ);
           return classes && !UnregisterClass(classes.get());
         }) == 0;
}

}  // namespace snip
