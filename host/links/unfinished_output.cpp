#include "links/unfinished_output.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "links/input_bytes.h"
#include "links/link_totals.h"
#include "planning/plan_file.h"
#include "planning/whole_file.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBuffered = 256U << 10U;     // bytes
constexpr std::size_t kLargestState = 64U << 20U;  // bytes
constexpr std::chrono::milliseconds kBetweenCheckpoints{500};
constexpr std::size_t kMostDifferences = 4;
constexpr std::string_view kHeading = "terrain-profiler links 1";

const char* folderAdvice(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return "; name a file in a folder that you may write to";
    case ENOENT:
    case ENOTDIR:
      return "; check the name of its folder";
    default:
      return "";
  }
}

LinkFileError cannotWrite(const std::string& path, int error) {
  return LinkFileError("cannot write " + path + ": " + systemReason(error) + folderAdvice(error));
}

// Through links the file that they name is replaced, not the link.
std::string linkedFile(const std::string& path) {
  constexpr int kMostLinksOnTheWay = 40;  // as many as the system follows
  fs::path file = path;
  std::error_code none;
  for (int link = 0; fs::is_symlink(fs::symlink_status(file, none)); ++link) {
    if (link == kMostLinksOnTheWay) throw cannotWrite(path, ELOOP);
    file = file.parent_path() / fs::read_symlink(file, none);
  }
  return file.string();
}

void writeWhole(int file, std::string_view text, const std::string& path) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) throw cannotWrite(path, written == 0 ? EIO : errno);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void bringToDisk(int file, const std::string& path) {
  // Where a file system has no notion of it, there is nothing to wait for.
  if (::fdatasync(file) != 0 && errno != EINVAL && errno != ENOTSUP) throw cannotWrite(path, errno);
}

std::string checksum(std::string_view text) {
  std::uint64_t sum = 0xCBF29CE484222325U;  // FNV-1a
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return std::to_string(sum);
}

std::string cutValue(const std::string& value) {
  constexpr std::size_t kLongestShown = 80;
  if (value.empty()) return "not there";
  return value.size() > kLongestShown ? value.substr(0, kLongestShown) + "..." : value;
}

const std::string* factOf(const RunFacts& facts, const std::string& name) {
  for (const auto& [known, value] : facts)
    if (known == name) return &value;
  return nullptr;
}

class StreamSink final : public LinkSink {
 public:
  StreamSink(int descriptor, std::string title, bool owned)
      : descriptor_(descriptor), title_(std::move(title)), owned_(owned) {}
  ~StreamSink() override {
    if (owned_) ::close(descriptor_);
  }
  // Whoever reads it is not kept waiting.
  void write(std::string_view text) override { writeWhole(descriptor_, text, title_); }
  void checkpoint(const std::string&) override {}
  bool checkpointIsDue() const override { return false; }
  void finish() override {}
  std::string left() const override { return {}; }

 private:
  int descriptor_;
  std::string title_;
  bool owned_;
};

}  // namespace

LinkSink::~LinkSink() = default;

std::unique_ptr<LinkSink> makeStreamSink(int descriptor, std::string title, bool owned) {
  return std::make_unique<StreamSink>(descriptor, std::move(title), owned);
}

std::string differenceOf(const RunFacts& before, const RunFacts& now) {
  std::string text;
  std::size_t differences = 0;
  const auto differ = [&](const std::string& name, const std::string& was, const std::string& is) {
    if (++differences <= kMostDifferences)
      text += (text.empty() ? "" : "; ") + name + " was " + cutValue(was) + " and is " + cutValue(is);
  };
  for (const auto& [name, value] : now) {
    const std::string* was = factOf(before, name);
    if (was == nullptr || *was != value) differ(name, was == nullptr ? "" : *was, value);
  }
  for (const auto& [name, value] : before)
    if (factOf(now, name) == nullptr) differ(name, value, "");
  if (differences > kMostDifferences)
    text += "; and " + std::to_string(differences - kMostDifferences) + " more";
  return text;
}

std::string KeptState::text() const {
  std::string text(kHeading);
  text += '\n';
  for (const auto& [name, value] : facts)
    text += "fact\t" + escapedLine(name) + '\t' + escapedLine(value) + '\n';
  text += "bytes\t" + std::to_string(bytes) + "\ntotals\t" + escapedLine(totals) + '\n';
  return text + "end\t" + checksum(text) + '\n';
}

std::optional<KeptState> KeptState::read(std::string_view text) {
  const std::size_t end = text.rfind("end\t");
  if (end == std::string_view::npos || text.substr(end) != "end\t" + checksum(text.substr(0, end)) + "\n")
    return std::nullopt;
  text = text.substr(0, end);
  if (text.substr(0, kHeading.size() + 1) != std::string(kHeading) + "\n") return std::nullopt;
  text.remove_prefix(kHeading.size() + 1);
  KeptState state;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() + 1);
    const std::size_t tab = line.find('\t');
    const std::string_view key = line.substr(0, tab),
                           rest = tab == std::string_view::npos ? "" : line.substr(tab + 1);
    if (key == "fact") {
      const std::size_t second = rest.find('\t');
      state.facts.emplace_back(
          unescapedLine(rest.substr(0, second)),
          second == std::string_view::npos ? "" : unescapedLine(rest.substr(second + 1)));
    } else if (key == "bytes") {
      std::from_chars(rest.data(), rest.data() + rest.size(), state.bytes);
    } else if (key == "totals") {
      state.totals = unescapedLine(rest);
    }
  }
  return state;
}

UnfinishedOutput::UnfinishedOutput(const std::string& path, RunFacts facts, StartMode mode, bool canResume)
    : path_(path),
      target_(linkedFile(path)),
      unfinished_(target_ + ".unfinished"),
      state_(unfinished_ + ".state"),
      facts_(std::move(facts)) {
  checkTarget();
  open();
  try {
    begin(mode, canResume);
  } catch (...) {
    ::close(file_);
    throw;
  }
}

void UnfinishedOutput::begin(StartMode mode, bool canResume) {
  // A state without rows is that of a run which ended between its last two steps, or before its first: there
  // is nothing to lose.
  struct stat status {};
  const bool isLeft = ::fstat(file_, &status) == 0 && status.st_size > 0;
  if (isLeft && mode == StartMode::kFresh)
    throw LinkFileError(
        unfinished_ +
        " is left of a run that was cut off; --resume goes on with it, --restart throws it away "
        "and begins anew");
  if (isLeft && mode == StartMode::kResume) return takeKept(canResume);
  if (::ftruncate(file_, 0) != 0) throw cannotWrite(unfinished_, errno);
  writeState({});
}

UnfinishedOutput::~UnfinishedOutput() {
  if (file_ >= 0) ::close(file_);
}

void UnfinishedOutput::checkTarget() const {
  std::error_code none;
  if (fs::is_directory(target_, none))
    throw LinkFileError("cannot write " + path_ + ": it is a folder; name a file");
  if (::access(target_.c_str(), F_OK) == 0 && ::access(target_.c_str(), W_OK) != 0)
    throw cannotWrite(path_, errno);
}

void UnfinishedOutput::open() {
  file_ = ::open(unfinished_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (file_ < 0) throw cannotWrite(unfinished_, errno);
  if (::flock(file_, LOCK_EX | LOCK_NB) == 0) return;
  const int error = errno;
  ::close(file_);
  file_ = -1;
  throw error == EWOULDBLOCK
      ? LinkFileError("another run is writing " + path_ + "; wait for it, or name another file")
      : cannotWrite(unfinished_, error);
}

void UnfinishedOutput::takeKept(bool canResume) {
  if (!canResume)
    throw LinkFileError(
        "a list from standard input cannot be gone on with, because what was read is gone; give "
        "the list as a file, or begin anew with --restart");
  std::optional<KeptState> kept;
  try {
    kept = KeptState::read(readWholeFile(state_, kLargestState));
  } catch (const PlanFileError&) {
  }
  struct stat status {};
  if (!kept || ::fstat(file_, &status) != 0 || static_cast<std::uint64_t>(status.st_size) < kept->bytes)
    throw LinkFileError("what is left in " + unfinished_ + " is damaged; --restart begins anew");
  if (const std::string difference = differenceOf(kept->facts, facts_); !difference.empty())
    throw LinkFileError("what is left in " + unfinished_ + " is of another run: " + difference +
                        "; make it the same, or begin anew with --restart");
  if (::ftruncate(file_, static_cast<off_t>(kept->bytes)) != 0 || ::lseek(file_, 0, SEEK_END) < 0)
    throw cannotWrite(unfinished_, errno);
  bytes_ = kept->bytes;
  // A run that was cut off before its first checkpoint has no totals: it begins, under the same name.
  if (bytes_ > 0) keptTotals_ = kept->totals;
}

void UnfinishedOutput::write(std::string_view text) {
  buffer_.append(text);
  if (buffer_.size() >= kBuffered) flush();
}

void UnfinishedOutput::flush() {
  writeWhole(file_, buffer_, unfinished_);
  bytes_ += buffer_.size();
  buffer_.clear();
}

bool UnfinishedOutput::checkpointIsDue() const {
  return Clock::now() - lastCheckpoint_ >= kBetweenCheckpoints;
}

// What the state counts is on the disk before the state is.
void UnfinishedOutput::checkpoint(const std::string& totals) {
  flush();
  bringToDisk(file_, unfinished_);
  writeState(totals);
  lastCheckpoint_ = Clock::now();
}

void UnfinishedOutput::writeState(const std::string& totals) {
  const std::string text = KeptState{facts_, bytes_, totals}.text();
  const std::string beside = state_ + ".new";
  const int file = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (file < 0) throw cannotWrite(beside, errno);
  try {
    writeWhole(file, text, beside);
    bringToDisk(file, beside);
  } catch (...) {
    ::close(file);
    ::unlink(beside.c_str());
    throw;
  }
  ::close(file);
  if (std::rename(beside.c_str(), state_.c_str()) != 0) throw cannotWrite(state_, errno);
}

void UnfinishedOutput::finish() {
  flush();
  struct stat replaced {};
  if (::stat(target_.c_str(), &replaced) == 0) ::fchmod(file_, replaced.st_mode & 07777U);
  bringToDisk(file_, unfinished_);
  if (std::rename(unfinished_.c_str(), target_.c_str()) != 0) throw cannotWrite(path_, errno);
  ::unlink(state_.c_str());
}

}  // namespace zel::host
