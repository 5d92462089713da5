#include "app/ComRegistration.h"

#include <objbase.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <vector>

#include "app/AddInIdentity.h"
#include "platform/Com.h"
#include "platform/Handle.h"
#include "platform/SystemLibrary.h"
#include "platform/Win32Text.h"

namespace snip {
namespace {

constexpr const char* kClassIdsKey = "CLSID";

std::string ClassIdText(const CLSID& id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return {text.begin(), text.end() - 1};  // digits and punctuation
}

/// A key and a value of it.
struct Entry {
  std::string key;
  std::wstring text;                   ///< Empty for none.
  REGSAM view = 0;                     ///< Of the registry; 0 is the program's own.
  const wchar_t* valueName = nullptr;  ///< Null for the default value.
};

std::wstring Wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

std::string ClassKey(const CLSID& id = kConnectClassId) {
  return std::string(kClassIdsKey) + "\\" + ClassIdText(id);
}

/// The keys of one class, each before those below it.
class Entries : public std::vector<Entry> {
 public:
  void Add(const std::string& key, const char* subkey, const std::wstring& text, REGSAM view = 0,
           const wchar_t* valueName = nullptr) {
    Entry& entry = emplace_back();
    entry.key = key + subkey;
    entry.text = text;
    entry.view = view;
    entry.valueName = valueName;
  }
  /// By the class's name; both views of the registry share them.
  void AddName(const std::string& progId, const CLSID& id) {
    Add(progId, "", Wide(kAddInName));
    Add(progId, "\\CLSID", Wide(ClassIdText(id)));
  }
};

Entries NameEntries() {
  Entries entries;
  entries.AddName(kAddInProgId, kConnectClassId);
  return entries;
}

/// By the class's id.
Entries ClassEntries(const std::wstring& program) {
  Entries entries;
  const std::string key = ClassKey();
  entries.Add(key, "", Wide(kAddInName));
  entries.Add(key, "\\LocalServer32", L"\"" + program + L"\"");  // blanks in the path would end it otherwise
  entries.Add(key, "\\ProgID", Wide(kAddInProgId));
  entries.Add(key, "\\Programmable", L"");
  return entries;
}

Entries LibraryEntries(const VbaLibrary& library, const std::wstring& path) {
  Entries entries;
  entries.AddName(library.progId, library.classId);
  const std::string key = ClassKey(library.classId);
  entries.Add(key, "", Wide(kAddInName), library.view);
  entries.Add(key, "\\InprocServer32", path, library.view);
  entries.Add(key, "\\InprocServer32", L"Apartment", library.view, L"ThreadingModel");
  return entries;
}

bool Write(HKEY classes, const Entry& entry) {
  HKEY opened = nullptr;
  if (RegCreateKeyExA(classes, entry.key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE | entry.view,
                      nullptr, &opened, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const UniqueRegKey key(opened);
  return entry.text.empty() ||
         RegSetValueExW(key.get(), entry.valueName, 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(entry.text.c_str()),
                        static_cast<DWORD>((entry.text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool Write(HKEY classes, const Entries& entries) {
  return std::all_of(entries.begin(), entries.end(),
                     [classes](const Entry& entry) { return Write(classes, entry); });
}

UniqueRegKey OpenClasses(HKEY root, REGSAM access) {
  HKEY opened = nullptr;
  RegOpenKeyExA(root, "Software\\Classes", 0, access, &opened);
  return UniqueRegKey(opened);
}

bool Exists(HKEY classes, const std::string& key, REGSAM view = 0) {
  HKEY opened = nullptr;
  const LONG result = RegOpenKeyExA(classes, key.c_str(), 0, KEY_READ | view, &opened);
  const UniqueRegKey owner(opened);
  return result != ERROR_FILE_NOT_FOUND;
}

/// Windows XP's 32-bit editions have one view, and no function for another.
void Delete(HKEY classes, const std::string& key, REGSAM view) {
  static auto* const deleteIn = SystemFunction<decltype(RegDeleteKeyExA)>("advapi32.dll", "RegDeleteKeyExA");
  if (view != 0 && deleteIn != nullptr) {
    deleteIn(classes, key.c_str(), view, 0);
  } else {
    RegDeleteKeyA(classes, key.c_str());
  }
}

/// Takes the keys away; false when one is still there.
bool TakeAway(HKEY classes, const Entries& entries) {
  // From the innermost: a key that holds something of others is not deleted.
  std::for_each(entries.rbegin(), entries.rend(),
                [classes](const Entry& entry) { Delete(classes, entry.key, entry.view); });
  return std::none_of(entries.begin(), entries.end(),
                      [classes](const Entry& entry) { return Exists(classes, entry.key, entry.view); });
}

bool IsEmpty(HKEY root, const std::string& key, REGSAM view) {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(root, key.c_str(), 0, KEY_READ | view, &opened) != ERROR_SUCCESS) return false;
  const UniqueRegKey owner(opened);
  DWORD keys = 0;
  DWORD values = 0;
  return RegQueryInfoKeyA(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                          nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         keys == 0 && values == 0;
}

/// The view of the registry that programs of the other width have.
constexpr REGSAM kOtherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

/// The path that a class has in `server`, its key for programs or for libraries, without quotes; empty when
/// it is not registered below `classes`.
std::wstring RegisteredPath(HKEY classes, const std::string& server, REGSAM view) {
  HKEY opened = nullptr;
  if (RegOpenKeyExA(classes, server.c_str(), 0, KEY_READ | view, &opened) != ERROR_SUCCESS) return {};
  const UniqueRegKey key(opened);
  DWORD size = 0;
  RegQueryValueExW(opened, nullptr, nullptr, nullptr, nullptr, &size);
  std::wstring path(size / sizeof(wchar_t) + 1, L'\0');
  if (RegQueryValueExW(opened, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(path.data()), &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  path.resize(std::wcslen(path.c_str()));
  std::erase(path, L'"');
  return path;
}

/// The same path for a file that was started by its short name.
std::wstring LongPath(const std::wstring& path) {
  std::wstring longer(GetLongPathNameW(path.c_str(), nullptr, 0), L'\0');
  const DWORD length = GetLongPathNameW(path.c_str(), longer.data(), static_cast<DWORD>(longer.size()));
  if (length == 0 || length >= longer.size()) return path;
  longer.resize(length);
  return longer;
}

std::wstring BesideProgram(const VbaLibrary& library) {
  const std::wstring program = WideProgramPath();
  return program.substr(0, program.rfind(L'\\') + 1) + Wide(library.file);
}

/// Whose `path` is, beside a file of this copy.
Registered OwnerOf(const std::wstring& path, const std::wstring& own) {
  if (path.empty()) return Registered::None;
  if (lstrcmpiW(LongPath(path).c_str(), LongPath(own).c_str()) == 0) return Registered::Own;
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? Registered::Gone : Registered::Other;
}

Registered RegisteredIn(HKEY classes, REGSAM view = 0) {
  return OwnerOf(RegisteredPath(classes, ClassKey() + "\\LocalServer32", view), WideProgramPath());
}

Registered RegisteredLibrary(const VbaLibrary& library) {
  const UniqueRegKey classes = OpenClasses(HKEY_CURRENT_USER, KEY_READ);
  const std::string server = ClassKey(library.classId) + "\\InprocServer32";
  const std::wstring path = classes ? RegisteredPath(classes.get(), server, library.view) : std::wstring();
  return OwnerOf(path, BesideProgram(library));
}

/// What COM finds: an entry below a later root hides those below the earlier ones.
Registered RegisteredIn(std::span<const HKEY> roots, REGSAM view) {
  Registered found = Registered::None;
  for (const HKEY root : roots) {
    const UniqueRegKey classes = OpenClasses(root, KEY_READ);
    const Registered here = classes ? RegisteredIn(classes.get(), view) : Registered::None;
    if (here != Registered::None) found = here;
  }
  return found;
}

}  // namespace

bool RegisterClass(HKEY classes, const std::wstring& program) {
  const bool isNew = !Exists(classes, ClassKey());
  const bool written = Write(classes, NameEntries()) && Write(classes, ClassEntries(program));
  if (!written && isNew) UnregisterClass(classes);  // an earlier registration is better than none
  return written;
}

bool UnregisterClass(HKEY classes) {
  bool gone = TakeAway(classes, ClassEntries(L""));
  // A copy of the other width is found by the same name.
  if (RegisteredIn(classes, kOtherView) == Registered::None) gone = TakeAway(classes, NameEntries()) && gone;
  DeleteKeyIfEmpty(classes, kClassIdsKey);  // which a user without classes does not have either
  return gone;
}

std::array<HKEY, 2> RegistrationRoots() {
  return {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
}

std::optional<std::size_t> RegisterServer(std::span<const HKEY> roots) {
  const auto taken = std::find_if(roots.begin(), roots.end(), [](HKEY root) {
    const UniqueRegKey classes = OpenClasses(root, KEY_READ | KEY_WRITE);
    return classes && RegisterClass(classes.get(), WideProgramPath());
  });
  if (taken == roots.end()) return std::nullopt;
  const auto index = static_cast<std::size_t>(taken - roots.begin());
  // What an earlier registration left for the user would hide this one.
  UnregisterServer(roots.subspan(index + 1), Copies::All);
  return index;
}

bool UnregisterServer(std::span<const HKEY> roots, Copies copies) {
  // Each of them, whether or not another one fails.
  return std::count_if(roots.begin(), roots.end(), [copies](HKEY root) {
           const UniqueRegKey classes = OpenClasses(root, KEY_READ);
           if (!classes) return false;
           if (copies == Copies::Own && !TakesAway(RegisteredIn(classes.get()))) return false;
           return !UnregisterClass(classes.get());
         }) == 0;
}

bool AnyRegistered(std::span<const HKEY> roots) {
  return RegisteredIn(roots, 0) != Registered::None || RegisteredIn(roots, kOtherView) != Registered::None;
}

bool RegisterWhereMoved(std::span<const HKEY> roots) {
  return EntersItself(RegisteredIn(roots, 0), RegisteredIn(roots, kOtherView)) && RegisterServer(roots);
}

std::wstring LibraryPath(const VbaLibrary& library) {
  const std::wstring path = BesideProgram(library);
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? std::wstring() : path;
}

bool RegisterLibraries() {
  Write(HKEY_CURRENT_USER, {"Software\\Classes", L""});  // which a new user may not have
  const UniqueRegKey classes = OpenClasses(HKEY_CURRENT_USER, KEY_READ | KEY_WRITE);
  bool written = true;
  for (const VbaLibrary& library : kVbaLibraries) {
    const std::wstring path = LibraryPath(library);
    if (!path.empty()) written = classes && Write(classes.get(), LibraryEntries(library, path)) && written;
  }
  return written;
}

bool LibraryMissing() {
  return std::any_of(std::begin(kVbaLibraries), std::end(kVbaLibraries), [](const VbaLibrary& library) {
    const Registered registered = RegisteredLibrary(library);
    return (registered == Registered::None || registered == Registered::Gone) &&
           !LibraryPath(library).empty();
  });
}

bool LibraryIsOwn(const VbaLibrary& library) {
  return TakesAway(RegisteredLibrary(library));
}

bool UnregisterLibrary(const VbaLibrary& library) {
  const UniqueRegKey classes = OpenClasses(HKEY_CURRENT_USER, KEY_READ | KEY_WRITE);
  if (!classes) return true;
  const bool gone = TakeAway(classes.get(), LibraryEntries(library, L""));
  DeleteKeyIfEmpty(classes.get(), kClassIdsKey, library.view);
  return gone;
}

bool DeleteKeyIfEmpty(HKEY root, const std::string& key, REGSAM view) {
  if (!IsEmpty(root, key, view)) return false;
  Delete(root, key, view);
  return true;
}

}  // namespace snip
