// What VBA's editor waits for when it starts with the add-in's library. Prints report lines for ./bench.
//   vba_bench LIBRARY.DLL

#include <windows.h>
#include <tlhelp32.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/AddInIdentity.h"
#include "app/IDTExtensibility.h"
#include "benches/Comparison.h"
#include "platform/Com.h"
#include "platform/Handle.h"
#include "tests/host/HostModel.h"

namespace snip::bench {
namespace {

constexpr int kRuns = 7;

[[noreturn]] void Fail(const std::string& what) {
  std::fprintf(stderr, "vba_bench: %s\n", what.c_str());
  std::exit(1);
}

int Processes() {
  const UniqueFile processes(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32 entry{};
  entry.dwSize = sizeof entry;
  int count = 0;
  for (BOOL more = Process32First(processes.get(), &entry); more != FALSE;
       more = Process32Next(processes.get(), &entry)) {
    ++count;
  }
  return count;
}

ComPtr<IDTExtensibility2> MakeAddIn(HMODULE library) {
  const auto getClassObject = reinterpret_cast<decltype(DllGetClassObject)*>(
      reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  ComPtr<IDTExtensibility2> addIn;
  const CLSID& id = kVbaLibraries[sizeof(void*) == 8 ? 1 : 0].classId;
  if (getClassObject == nullptr || FAILED(getClassObject(id, __uuidof(IClassFactory), factory.PutVoid())) ||
      FAILED(factory->CreateInstance(nullptr, __uuidof(IDTExtensibility2), addIn.PutVoid()))) {
    Fail("the editor's library makes no add-in");
  }
  return addIn;
}

/// What an editor waits for that starts with the add-in.
double StartInEditor(const std::string& file) {
  constexpr LONG kStartup = 1;
  test::HostModel editor(nullptr);
  editor.isVba = true;
  const ComPtr<IDispatch> root = editor.VBE();
  HMODULE library = nullptr;
  ComPtr<IDTExtensibility2> addIn;
  const double elapsed = Milliseconds([&] {
    library = LoadLibraryA(file.c_str());
    addIn = MakeAddIn(library);
    addIn->OnConnection(root.get(), kStartup, nullptr, nullptr);
    addIn->OnStartupComplete(nullptr);
  });
  if (editor.entries.size() != 1) Fail("the add-in makes no entry");
  addIn->OnDisconnection(0, nullptr);
  addIn.Reset();
  FreeLibrary(library);
  return elapsed;
}

void MeasureInEditor(const std::string& file) {
  constexpr double kLimitMs = 5;
  const ComApartment apartment;
  const int before = Processes();
  std::vector<double> times;
  for (int run = 0; run < kRuns; ++run) times.push_back(StartInEditor(file));
  PrintValue("what the add-in adds to the start of VBA's editor", Median(times),
             Limit{kLimitMs, "Office starts often, and the add-in is seldom needed"}, "ms");
  PrintValue("processes that it starts then", Processes() - before,
             Limit{0, "nothing runs until the entry is chosen"}, "");
}

}  // namespace
}  // namespace snip::bench

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: vba_bench LIBRARY.DLL\n", stderr);
    return 2;
  }
  snip::bench::MeasureInEditor(arguments[1]);
  return 0;
}
