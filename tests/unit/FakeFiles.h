#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "history/Files.h"
#include "library/LibraryStore.h"
#include "tests/unit/AllBytes.h"

namespace snip::test {

/// The program ends in the middle of a call.
struct Killed {};

/// What goes wrong with files.
struct Faults {
  static constexpr int kNever = 1 << 30;

  std::set<std::string> busy;      ///< Another program has these open.
  std::set<std::string> tooLarge;  ///< To be read.
  int killAt = kNever, failFrom = kNever, failUntil = kNever;
  double written = 0.5;  ///< How much of its bytes a write that does not end leaves.
};

/// Files in memory, of which any call can fail or end the program, and a library folder that deletes and
/// writes them as the real one does. For one thread at a time.
class FakeFiles : public Files, public LibraryStore, public Faults {
 public:
  using Files::patience;

  std::map<std::string, std::string> bytes;
  std::map<std::string, std::int64_t> changed;
  Patience::Duration waited{};
  UtcTime now = std::chrono::sys_days(std::chrono::year(2026) / 7 / 9) + std::chrono::hours(14);
  int calls = 0;  ///< That change something.

  std::optional<FileStamp> Stamp(const std::string& path) override {
    return std::as_const(*this).Stamp(path);
  }
  std::optional<std::string> Read(const std::string& path) override {
    if (tooLarge.contains(path)) throw std::bad_alloc();
    return Refuses(path) || !bytes.contains(path) ? std::nullopt : std::optional(bytes[path]);
  }
  bool Write(const std::string& path, std::string_view text) override {
    if (Refuses(path)) return false;
    const bool whole = Begins() && calls < killAt;
    bytes[path] = text.substr(0, static_cast<std::size_t>((whole ? 1 : written) * double(text.size())));
    changed[path] = now.time_since_epoch().count() * 10000 + calls;
    return Ends(whole);
  }
  bool Move(const std::string& from, const std::string& to) override {
    if (!Begins() || !bytes.contains(from) || Refuses(from) || Refuses(to)) return Ends(false);
    bytes[to] = bytes[from];
    changed[to] = changed[from];
    return Ends(bytes.erase(from) > 0);
  }
  bool Remove(const std::string& path) override { return Ends(Begins() && bytes.erase(path) > 0); }
  bool MakeFolder(const std::string&) override { return Ends(Begins()); }
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

  // LibraryStore
  std::vector<std::string> Names() const override { return {}; }
  std::string PathOf(const std::string& name) const override { return "/lib/" + name + ".bns"; }
  bool Exists(const std::string& path) const override { return bytes.contains(path); }
  std::optional<FileStamp> Stamp(const std::string& path) const override {
    return Exists(path) ? FileStamp{true, bytes.at(path).size(), changed.at(path)} : FileStamp{};
  }
  std::unique_ptr<ByteSource> Open(const std::string& path) const override {
    return Exists(path) ? std::make_unique<BytesInMemory>(bytes.at(path)) : nullptr;
  }
  bool Replace(const std::string& path, ByteSource&& source) override {
    Remove(path);
    return Write(path, AllBytes(source));
  }
  bool Rename(const std::string& path, const std::string& newPath) override { return Move(path, newPath); }

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
  /// Whether a call does anything.
  bool Begins() { return ++calls < failFrom || calls > failUntil; }
  bool Ends(bool done) const { return calls == killAt ? throw Killed() : done; }

  std::map<std::string, std::weak_ptr<int>> held_;
};

}  // namespace snip::test
