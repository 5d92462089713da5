#pragma once

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <vector>

#include "history/Files.h"
#include "library/LibraryStore.h"
#include "tests/unit/AllBytes.h"

namespace snip::test {

/// The program ends in the middle of a call.
struct Killed {};

/// Files in memory, of which any call can fail or end the program. For one thread at a time.
class FakeFiles : public Files {
 public:
  static constexpr int kNever = std::numeric_limits<int>::max();

  std::map<std::string, std::string> bytes;
  std::map<std::string, std::int64_t> changed;
  std::set<std::string> busy;      ///< Another program has these open.
  std::set<std::string> tooLarge;  ///< To be read.
  Patience::Duration waited{};
  UtcTime now = std::chrono::sys_days(std::chrono::year(2026) / 7 / 9) + std::chrono::hours(14);
  int calls = 0;  ///< That change something.
  int killAt = kNever, failFrom = kNever, failUntil = kNever;
  double written = 0.5;  ///< How much of its bytes a write that does not end leaves.

  std::optional<FileStamp> Stamp(const std::string& path) override {
    return bytes.contains(path) ? FileStamp{true, bytes[path].size(), changed[path]} : FileStamp{};
  }
  std::optional<std::string> Read(const std::string& path) override {
    if (tooLarge.contains(path)) throw std::bad_alloc();
    return Refuses(path) || !bytes.contains(path) ? std::nullopt : std::optional(bytes[path]);
  }
  bool Write(const std::string& path, std::string_view text) override {
    if (Refuses(path)) return false;
    const int call = ++calls;
    const bool whole = call < killAt && !Fails(call);
    bytes[path] = text.substr(0, static_cast<std::size_t>((whole ? 1 : written) * double(text.size())));
    changed[path] = now.time_since_epoch().count() * 10000 + call;
    if (call == killAt) throw Killed();
    return whole;
  }
  bool Move(const std::string& from, const std::string& to) override {
    if (!Does() || !bytes.contains(from) || Refuses(from) || Refuses(to)) return false;
    bytes[to] = bytes[from];
    changed[to] = changed[from];
    return bytes.erase(from) > 0;
  }
  bool Remove(const std::string& path) override {
    const int call = ++calls;
    const bool removed = !Fails(call) && bytes.erase(path) > 0;
    if (call == killAt) throw Killed();
    return removed;
  }
  bool MakeFolder(const std::string&) override { return Does(); }
  std::vector<FileEntry> List(const std::string& folder) override {
    std::vector<FileEntry> list;
    for (const auto& [path, text] : bytes) {
      if (!path.starts_with(folder + "/")) continue;
      const std::string below = path.substr(folder.size() + 1), name = below.substr(0, below.find('/'));
      if (list.empty() || list.back().name != name)
        list.push_back({name, {true, text.size(), changed[path]}});
    }
    return list;
  }
  UtcTime Now() override { return now += std::chrono::milliseconds(1); }
  std::string Identity(const std::string& path) override { return path; }
  std::unique_ptr<Held> Lock(const std::string& path) override { return Hold("lock " + path); }
  std::unique_ptr<Held> Claim(const std::string& path) override { return Hold("claim " + path); }

 private:
  struct Given : Held {
    std::shared_ptr<int> life = std::make_shared<int>();
  };

  std::unique_ptr<Held> Hold(const std::string& name) {
    if (!held_[name].expired()) return nullptr;
    auto given = std::make_unique<Given>();
    held_[name] = given->life;
    return given;
  }
  bool Refuses(const std::string& path) {
    const bool refuses = busy.contains(path);
    if (refuses) waited += patience().Take(std::chrono::milliseconds(1400));
    return refuses;
  }
  bool Fails(int call) const { return call >= failFrom && call <= failUntil; }
  bool Does() {
    const int call = ++calls;
    if (call == killAt) throw Killed();
    return !Fails(call);
  }

  std::map<std::string, std::weak_ptr<int>> held_;
};

/// A library folder that deletes and writes as the real one does.
class FakeFolder : public LibraryStore {
 public:
  explicit FakeFolder(FakeFiles& files) : files_(files) {}

  std::vector<std::string> Names() const override { return {}; }
  std::string PathOf(const std::string& name) const override { return "/lib/" + name + ".bns"; }
  bool Exists(const std::string& path) const override { return files_.bytes.contains(path); }
  std::optional<FileStamp> Stamp(const std::string& path) const override { return files_.Stamp(path); }
  std::unique_ptr<ByteSource> Open(const std::string& path) const override {
    return Exists(path) ? std::make_unique<BytesInMemory>(files_.bytes[path]) : nullptr;
  }
  bool Replace(const std::string& path, ByteSource&& bytes) override {
    files_.Remove(path);
    return files_.Write(path, AllBytes(bytes));
  }
  bool Rename(const std::string& path, const std::string& newPath) override {
    return files_.Move(path, newPath);
  }

 private:
  FakeFiles& files_;
};

}  // namespace snip::test
