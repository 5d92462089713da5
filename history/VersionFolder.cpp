#include "history/VersionFolder.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "history/ContentHash.h"
#include "library/Library.h"

namespace snip {
namespace {

constexpr std::size_t kReadableLength = 24;
constexpr std::string_view kLabel = "path.txt";

std::size_t NameBegin(std::string_view path) {
  return path.find_last_of("/\\") + 1;
}

/// The readable beginning of a folder's name, valid on any file system.
std::string Readable(std::string_view file) {
  if (HasLibraryExtension(file)) file.remove_suffix(kLibraryExtension.size());
  std::string name;
  for (const char c : file.substr(0, kReadableLength)) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    name += plain ? c : '_';
  }
  return name;
}

}  // namespace

std::string MarkOfFolder(std::string_view identityOfFolder) {
  return "-" + HexDigits(ContentHash(identityOfFolder));
}

HistoryLimits LimitsFrom(const std::function<std::string(const char* name)>& read) {
  HistoryLimits limits;
  const auto take = [&](const char* name, auto& limit, unsigned unit) {
    const std::string text = read(name);
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc() && end == text.data() + text.size()) limit = std::uint64_t{number} * unit;
  };
  std::uint64_t versions = limits.versions, days = limits.days;
  take("HistoryVersions", versions, 1);
  take("HistoryDays", days, 1);
  take("HistoryMegabytes", limits.bytes, 1U << 20U);
  limits.versions = static_cast<std::size_t>(versions);
  limits.days = static_cast<std::size_t>(days);
  return limits;
}

VersionFolder::VersionFolder(Files& files, const std::string& root, std::string library)
    : files_(files), library_(std::move(library)) {
  const std::string identity = files.Identity(library_);
  const std::size_t name = NameBegin(identity);
  path_ = root + "/" + Readable(std::string_view(library_).substr(NameBegin(library_))) + "-" +
          HexDigits(ContentHash(std::string_view(identity).substr(name))) +
          MarkOfFolder(std::string_view(identity).substr(0, name));
}

bool VersionFolder::Make() {
  const std::string label = File(kLabel), unfinished = File("path.tmp");
  const auto stamp = files_.Stamp(label);
  if (stamp && stamp->size > 0) return true;
  return files_.MakeFolder(path_) && files_.Write(unfinished, library_ + "\r\n") &&
         files_.Move(unfinished, label);
}

void VersionFolder::TakeFrom(VersionFolder& former) {
  const std::vector<Version> versions = former.Versions();
  if (!Make()) return;
  const auto take = [&](const std::string& name) {
    const auto there = files_.Stamp(File(name));
    if (there && !there->exists) files_.Move(former.File(name), File(name));
  };
  take(std::string(kPendingSave));
  for (const Version& version : versions) take(FileNameOf(version));
  // If something is left, perhaps another program's draft, it is found by the label.
  const auto isLeft = [](const FileEntry& entry) { return entry.name != kLabel && entry.name != kRenamedTo; };
  if (std::ranges::any_of(files_.List(former.path()), isLeft)) return;
  files_.Remove(former.File(kRenamedTo));
  files_.Remove(former.File(kLabel));
  files_.Remove(former.path());
}

std::optional<std::string> VersionFolder::LibraryOf(Files& files, const std::string& folder) {
  const auto label = files.Read(folder + "/" + std::string(kLabel));
  if (!label || !label->ends_with("\r\n")) return std::nullopt;
  return label->substr(0, label->size() - 2);
}

std::vector<Version> VersionFolder::Versions() {
  std::vector<Version> versions;
  for (const FileEntry& entry : files_.List(path_)) {
    if (auto version = VersionOfFileName(entry.name)) {
      version->size = entry.stamp.size;
      version->written = entry.stamp.time();
      versions.push_back(*version);
    }
  }
  std::ranges::sort(versions, std::ranges::greater(), &Version::time);
  return versions;
}

std::optional<std::string> VersionFolder::Read(const Version& version) {
  auto bytes = files_.Read(FileOf(version));
  if (bytes) Remember(FileNameOf(version), ContentHash(*bytes));
  return bytes;
}

void VersionFolder::Remember(const std::string& file, std::uint64_t hash) {
  std::erase_if(hashes_, [&](const auto& known) { return known.first == file; });
  hashes_.emplace_back(file, hash);
}

std::optional<std::uint64_t> VersionFolder::Remembered(const std::string& file) const {
  const auto found = std::ranges::find(hashes_, file, &std::pair<std::string, std::uint64_t>::first);
  return found == hashes_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::uint64_t> VersionFolder::HashOf(const Version& version) {
  const std::string name = FileNameOf(version);
  if (const auto hash = Remembered(name)) return hash;
  return Read(version) ? Remembered(name) : std::nullopt;
}

VersionFolder::Kept VersionFolder::Find(const std::vector<Version>& versions, std::string_view bytes,
                                        std::uint64_t hash) {
  for (const Version& version : versions) {
    if (version.size == bytes.size() && HashOf(version) == hash)
      return {version, version == versions.front()};
  }
  return {};
}

bool VersionFolder::NewestIs(std::uint64_t hash) {
  const std::vector<Version> versions = Versions();
  return !versions.empty() && Remembered(FileNameOf(versions.front())) == hash;
}

template <class Place>
std::optional<Version> VersionFolder::Keep(std::string_view bytes, std::uint64_t hash, VersionTag tag,
                                           std::optional<UtcTime> time, Place place) {
  const std::vector<Version> versions = Versions();
  const Kept kept = Find(versions, bytes, hash);
  if (kept.newest || (kept.version && tag != VersionTag::Saved)) return kept.version;
  const UtcTime now = files_.Now();
  const UtcTime came = std::min(time.value_or(now), now);  // a file may have any time
  Version version{.time = came, .tag = tag, .size = bytes.size(), .written = came};
  if (!versions.empty()) {
    version.time = std::max(version.time, versions.front().time + std::chrono::milliseconds(1));
  }
  if (!place(FileOf(version))) return std::nullopt;
  Remember(FileNameOf(version), hash);
  if (kept.version) files_.Remove(FileOf(*kept.version));
  return version;
}

std::optional<Version> VersionFolder::Keep(std::string_view bytes, VersionTag tag,
                                           std::optional<UtcTime> time) {
  return Keep(bytes, ContentHash(bytes), tag, time, [&](const std::string& file) {
    // A version is complete or does not exist.
    const std::string unfinished = File("version.tmp");
    return files_.Write(unfinished, bytes) && files_.Move(unfinished, file);
  });
}

std::optional<Version> VersionFolder::KeepFile(std::string_view name, std::string_view bytes, VersionTag tag,
                                               std::optional<UtcTime> time,
                                               std::optional<std::uint64_t> hash) {
  bool moved = false;
  const auto kept = Keep(bytes, hash ? *hash : ContentHash(bytes), tag, time,
                         [&](const std::string& file) { return moved = files_.Move(File(name), file); });
  if (!kept) return std::nullopt;  // so keep the file, which is the only copy
  return moved || files_.Remove(File(name)) ? kept : std::nullopt;
}

void VersionFolder::Prune(const HistoryLimits& limits) {
  const std::vector<Version> versions = Versions();
  const auto dayOf = [](const Version& version) {
    return std::chrono::floor<std::chrono::days>(version.CameAbout());
  };
  std::size_t days = 0;  // so far, the last day first
  std::uint64_t room = limits.bytes;
  for (std::size_t i = 0; i < versions.size(); ++i) {
    const bool firstOfDay = i + 1 == versions.size() || dayOf(versions[i + 1]) != dayOf(versions[i]);
    const bool wanted = i < limits.versions || (firstOfDay && days < limits.days);
    days += firstOfDay ? 1U : 0U;
    if (i == 0 || (wanted && versions[i].size <= room)) {
      room -= std::min(room, versions[i].size);
    } else {
      files_.Remove(FileOf(versions[i]));
    }
  }
}

}  // namespace snip
