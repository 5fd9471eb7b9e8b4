#include "zeltool/terrain/overview_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "zeltool/user_folders/user_folders.h"

namespace zel {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMagic = "zelovr\r\n";
// Changes with the format and with what the heights mean. Read back otherwise on a machine of another order.
constexpr std::uint64_t kVersion = 0x0102030405060001U;
constexpr std::string_view kEnding = ".overview", kUnfinished = ".part";
constexpr std::uintmax_t kShare = 16;  // of all that may be kept, what is written between two looks
constexpr auto kAbandoned = std::chrono::hours(1);  // an unfinished file of that age is nobody's

std::uint64_t sumOf(std::string_view bytes) {
  std::uint64_t sum = 0xCBF29CE484222325U ^ bytes.size();
  while (!bytes.empty()) {
    std::uint64_t word = 0;
    const std::size_t size = std::min(bytes.size(), sizeof word);
    std::memcpy(&word, bytes.data(), size);
    sum = (sum ^ word) * 0x100000001B3U;
    sum ^= sum >> 29;
    bytes.remove_prefix(size);
  }
  return sum;
}

template <typename Number>
void appendNumber(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// Takes bytes off the front; nothing when there are too few.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}
  std::optional<std::string_view> take(std::size_t count) {
    if (rest_.size() < count) return std::nullopt;
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  bool has(std::string_view expected) { return take(expected.size()) == expected; }
  template <typename Number>
  bool has(Number expected) {
    std::string text;
    appendNumber(text, expected);
    return has(std::string_view(text));
  }
  bool atEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

bool has(Bytes& bytes, const PostWindow& window) {
  return bytes.has(window.column) && bytes.has(window.row) && bytes.has(window.columns) &&
         bytes.has(window.rows);
}

std::size_t cellsOf(const PostWindow& window) {
  return static_cast<std::size_t>(window.columns) * static_cast<std::size_t>(window.rows);
}

std::optional<std::string> wholeFile(const std::string& path, std::uintmax_t most) {
  // A pipe or a device under that name must not be waited for.
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (file < 0) return std::nullopt;
  std::string bytes;
  bool whole = false;
  struct stat status {};
  if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
      static_cast<std::uintmax_t>(status.st_size) <= most) {
    bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    for (ssize_t got = 1; done < bytes.size() && got > 0;
         done += static_cast<std::size_t>(std::max<ssize_t>(got, 0)))
      got = ::read(file, bytes.data() + done, bytes.size() - done);
    whole = done == bytes.size();
  }
  // The oldest that go first are those that were not used for the longest time.
  if (whole) ::futimens(file, nullptr);
  ::close(file);
  return whole ? std::optional(std::move(bytes)) : std::nullopt;
}

bool writeWhole(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file, bytes.data(), bytes.size());
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

}  // namespace

std::string overviewBytes(const std::string& key, const OverviewLevels& levels) {
  std::string bytes(kMagic);
  appendNumber(bytes, kVersion);
  appendNumber(bytes, std::uint64_t{key.size()});
  bytes += key;
  for (const HeightBlock& level : levels) {
    appendNumber(bytes, level.window.column);
    appendNumber(bytes, level.window.row);
    appendNumber(bytes, level.window.columns);
    appendNumber(bytes, level.window.rows);
    bytes.append(reinterpret_cast<const char*>(level.heights.data()), level.heights.size() * sizeof(float));
  }
  appendNumber(bytes, sumOf(bytes));
  return bytes;
}

std::optional<OverviewLevels> parseOverview(std::string_view bytes, const std::string& key,
                                            const std::vector<PostWindow>& windows) {
  if (bytes.size() < sizeof(std::uint64_t)) return std::nullopt;
  const std::string_view summed = bytes.substr(0, bytes.size() - sizeof(std::uint64_t));
  if (!Bytes(bytes.substr(summed.size())).has(sumOf(summed))) return std::nullopt;
  Bytes rest(summed);
  if (!rest.has(kMagic) || !rest.has(kVersion) || !rest.has(std::uint64_t{key.size()}) ||
      !rest.has(std::string_view(key)))
    return std::nullopt;
  OverviewLevels levels;
  for (const PostWindow& window : windows) {
    if (!has(rest, window)) return std::nullopt;
    const auto heights = rest.take(cellsOf(window) * sizeof(float));
    if (!heights) return std::nullopt;
    levels.push_back({window, std::vector<float>(cellsOf(window))});
    std::memcpy(levels.back().heights.data(), heights->data(), heights->size());
  }
  if (!rest.atEnd()) return std::nullopt;
  return levels;
}

OverviewFiles::OverviewFiles(std::string folder, std::uintmax_t most)
    : folder_(std::move(folder)), most_(most) {}

std::string OverviewFiles::pathOf(const std::string& key) const {
  char name[40];
  std::snprintf(name, sizeof name, "%016llx", static_cast<unsigned long long>(sumOf(key)));
  return folder_ + "/" + name + std::string(kEnding);
}

std::optional<OverviewLevels> OverviewFiles::read(const std::string& key,
                                                  const std::vector<PostWindow>& windows) const {
  if (folder_.empty()) return std::nullopt;
  std::uintmax_t expected = kMagic.size() + 3 * sizeof(std::uint64_t) + key.size();
  for (const PostWindow& window : windows) expected += 16 + cellsOf(window) * sizeof(float);
  const auto bytes = wholeFile(pathOf(key), expected);
  return bytes ? parseOverview(*bytes, key, windows) : std::nullopt;
}

void OverviewFiles::write(const std::string& key, const OverviewLevels& levels) const {
  if (folder_.empty()) return;
  std::error_code failed;
  fs::create_directories(folder_, failed);
  if (failed) return;
  const std::string path = pathOf(key);
  std::string beside = path + ".XXXXXX" + std::string(kUnfinished);
  const int file = ::mkostemps(beside.data(), static_cast<int>(kUnfinished.size()), O_CLOEXEC);
  if (file < 0) return;
  const std::string bytes = overviewBytes(key, levels);
  const bool written = writeWhole(file, bytes);
  const bool closed = ::close(file) == 0;
  if (!written || !closed || std::rename(beside.c_str(), path.c_str()) != 0) ::unlink(beside.c_str());
  makeRoom(bytes.size());
}

// Thousands of small rasters have as many files: a look at all of them for each would take most of the time.
void OverviewFiles::makeRoom(std::uintmax_t written) const {
  const std::lock_guard lock(mutex_);
  if (written <= room_) {
    room_ -= written;
    return;
  }
  const std::uintmax_t kept = dropOldest();
  room_ = std::min(most_ - std::min(kept, most_), most_ / kShare);
}

// Gives the bytes that are kept.
std::uintmax_t OverviewFiles::dropOldest() const {
  struct Kept {
    fs::path path;
    fs::file_time_type used;
    std::uintmax_t bytes = 0;
  };
  std::vector<Kept> files;
  std::uintmax_t total = 0;
  std::error_code failed;
  for (fs::directory_iterator it(folder_, failed), end; !failed && it != end; it.increment(failed)) {
    std::error_code gone;
    const fs::path& path = it->path();
    if (!it->is_regular_file(gone) || gone) continue;
    const Kept file{path, it->last_write_time(gone), it->file_size(gone)};
    if (gone) continue;
    if (path.extension() == kUnfinished && fs::file_time_type::clock::now() - file.used > kAbandoned)
      fs::remove(path, gone);
    if (path.extension() != kEnding) continue;
    files.push_back(file);
    total += file.bytes;
  }
  if (total <= most_) return total;
  std::sort(files.begin(), files.end(), [](const Kept& a, const Kept& b) { return a.used < b.used; });
  for (const Kept& file : files) {
    if (total <= most_ - most_ / kShare) break;
    std::error_code gone;
    fs::remove(file.path, gone);
    total -= file.bytes;
  }
  return total;
}

std::string userOverviewFolder() {
  const std::string folder = userFolder("XDG_CACHE_HOME", ".cache");
  return folder.empty() ? "" : folder + "/zelprofiler/overviews";
}

}  // namespace zel
