#include "planning/recovery.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "planning/file_lock.h"
#include "planning/plan_json.h"
#include "planning/whole_file.h"

namespace zel::host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "plan-", kCopyEnd = ".json", kLockEnd = ".lock", kPartEnd = ".part";

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// "…/plan-1-2.lock" of "…/plan-1-2.json" and of anything that begins so.
fs::path lockOf(const fs::path& copy) {
  const std::string name = copy.filename().string();
  return copy.parent_path() / (name.substr(0, name.find('.')) + std::string(kLockEnd));
}

std::string absolutePath(const std::string& path) {
  if (path.empty()) return path;
  std::error_code failure;
  const fs::path absolute = fs::absolute(path, failure);
  return failure ? path : absolute.string();
}

// Gives the name under which the file now is, or nothing.
std::optional<std::string> setAside(const fs::path& path) {
  constexpr int kMostNames = 1000;
  for (int number = 1; number <= kMostNames; ++number) {
    const std::string ending = number == 1 ? "" : "." + std::to_string(number);
    const std::string name = path.string() + ending + ".unreadable";
    std::error_code none;
    if (fs::exists(fs::symlink_status(name, none))) continue;
    if (std::rename(path.c_str(), name.c_str()) == 0) return name;
    return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace

struct Recovery::Self {
  fs::path folder;
  std::optional<FileLock> lock;  // of the own copy, from the first keep() on
  fs::path copy;
  std::string original, originalState;  // as the first copy found it
  bool noted = false;                   // original and its state are set
  std::string toldReason;
  std::map<std::string, FileLock> offered;  // locks of left copies, by the copy's path

  void makeFolder();
  void takeOwnCopy();
  void write(const PlanFile& file, const std::string& originalPath);
  bool lockLeft(const fs::path& copy);
  void clearLeftovers(const fs::path& file);
  std::optional<LeftPlan> readLeft(const fs::path& copy, std::vector<std::string>& problems);
};

Recovery::Recovery(std::string folder) : self_(std::make_unique<Self>()) {
  self_->folder = std::move(folder);
}

Recovery::~Recovery() {
  // A lock without a copy is of no use to anyone.
  std::error_code none;
  if (self_->lock && !fs::exists(self_->copy, none)) self_->lock->remove();
}

void Recovery::Self::makeFolder() {
  std::error_code failure;
  const bool made = fs::create_directories(folder, failure);
  if (failure)
    throw PlanFileError("cannot make the folder " + folder.string() + ": " + systemReason(failure.value()));
  if (made) fs::permissions(folder, fs::perms::owner_all, failure);
}

void Recovery::Self::takeOwnCopy() {
  if (lock) return;
  makeFolder();
  constexpr int kMostAttempts = 10000;
  const std::string start = std::string(kPrefix) + std::to_string(::getpid()) + "-";
  int error = EEXIST;
  for (int number = 1; number <= kMostAttempts && error == EEXIST; ++number) {
    const fs::path wanted = folder / (start + std::to_string(number) + std::string(kCopyEnd));
    std::error_code none;
    if (fs::exists(wanted, none)) continue;  // of a process that had this number before
    FileLock attempt(lockOf(wanted), FileLock::Make::kFresh);
    // What holds a fresh file's lock is one that looks for forgotten locks.
    error = attempt.error() == EWOULDBLOCK ? EEXIST : attempt.error();
    if (error != 0) continue;
    lock.emplace(std::move(attempt));
    copy = wanted;
  }
  if (!lock) throw PlanFileError("cannot lock a file in " + folder.string() + ": " + systemReason(error));
}

void Recovery::Self::write(const PlanFile& file, const std::string& originalPath) {
  takeOwnCopy();
  const std::string absolute = absolutePath(originalPath);
  if (!noted || absolute != original) {
    original = absolute;
    originalState = fileState(absolute);
    noted = true;
  }
  const PlanOrigin origin{original, static_cast<std::int64_t>(std::time(nullptr)), originalState};
  replaceWholeFile(copy.string(), planText(file, origin), NewFileRights::kPrivate);
}

bool Recovery::keep(const PlanFile& file, const std::string& originalPath) {
  try {
    self_->write(file, originalPath);
    self_->toldReason.clear();
    return true;
  } catch (const PlanFileError& error) {
    if (self_->toldReason == error.what()) return false;
    self_->toldReason = error.what();
    throw;
  }
}

void Recovery::discard() noexcept {
  self_->noted = false;
  if (!self_->lock) return;
  ::unlink(self_->copy.c_str());
  self_->lock->remove();
  self_->lock.reset();
}

// Whether the copy belongs to nobody else.
bool Recovery::Self::lockLeft(const fs::path& left) {
  if (offered.count(left.string()) != 0) return true;
  FileLock attempt(lockOf(left), FileLock::Make::kAny);
  if (attempt.error() != 0) return false;
  offered.emplace(left.string(), std::move(attempt));
  return true;
}

// A lock without its copy, or a copy that was being written when its program was killed.
void Recovery::Self::clearLeftovers(const fs::path& file) {
  std::error_code none;
  const bool isLock = endsWith(file.filename().string(), kLockEnd);
  fs::path ownCopy = lockOf(file);
  ownCopy.replace_extension(kCopyEnd);
  if (isLock && fs::exists(ownCopy, none)) return;
  if (offered.count(ownCopy.string()) != 0 || (lock && lock->path() == lockOf(file))) return;
  FileLock attempt(lockOf(file), FileLock::Make::kAny);
  if (attempt.error() != 0) return;
  if (!isLock) ::unlink(file.c_str());
  if (!fs::exists(ownCopy, none)) attempt.remove();
}

std::optional<LeftPlan> Recovery::Self::readLeft(const fs::path& left, std::vector<std::string>& problems) {
  try {
    std::optional<PlanOrigin> origin;
    LeftPlan plan;
    plan.file = readPlanText(readWholeFile(left.string(), kLargestPlanFile), origin);
    plan.recoveryPath = left.string();
    if (!origin) return plan;
    plan.originalPath = origin->path;
    plan.savedAt = origin->savedAt;
    const std::string state = fileState(plan.originalPath);
    plan.originalMissing = !plan.originalPath.empty() && state.empty();
    plan.originalChanged = state != origin->state;
    return plan;
  } catch (const PlanFileError& error) {
    const auto held = offered.find(left.string());
    std::error_code none;
    if (!fs::exists(fs::symlink_status(left, none))) {  // taken away by its owner in this moment
      if (held != offered.end()) held->second.remove();
      offered.erase(left.string());
      return std::nullopt;
    }
    const auto aside = setAside(left);
    problems.push_back("A copy of unsaved work cannot be read: " + left.filename().string() + ": " +
                       error.what() + (aside ? ". It is kept as " + *aside + "." : "."));
    if (held != offered.end() && aside) held->second.remove();
    offered.erase(left.string());
    return std::nullopt;
  }
}

std::vector<LeftPlan> Recovery::left(std::vector<std::string>& problems) {
  std::vector<fs::path> copies;
  std::vector<LeftPlan> plans;
  std::error_code failure;
  fs::directory_iterator files(self_->folder, failure);
  if (failure == std::errc::no_such_file_or_directory) return plans;
  for (; !failure && files != fs::directory_iterator(); files.increment(failure)) {
    const std::string name = files->path().filename().string();
    if (name.compare(0, kPrefix.size(), kPrefix) != 0) continue;
    if (endsWith(name, kCopyEnd)) copies.push_back(files->path());
    if (endsWith(name, kLockEnd) || endsWith(name, kPartEnd)) self_->clearLeftovers(files->path());
  }
  if (failure)
    problems.push_back("The folder of unsaved work cannot be read: " + self_->folder.string() + ": " +
                       systemReason(failure.value()) + ".");
  std::sort(copies.begin(), copies.end());
  for (const fs::path& copy : copies) {
    if (self_->lock && copy == self_->copy) continue;
    if (!self_->lockLeft(copy)) continue;
    if (auto plan = self_->readLeft(copy, problems)) plans.push_back(std::move(*plan));
  }
  std::stable_sort(plans.begin(), plans.end(),
                   [](const LeftPlan& a, const LeftPlan& b) { return a.savedAt > b.savedAt; });
  return plans;
}

void Recovery::remove(const LeftPlan& left) noexcept {
  const auto held = self_->offered.find(left.recoveryPath);
  if (held == self_->offered.end()) return;
  ::unlink(left.recoveryPath.c_str());
  held->second.remove();
  self_->offered.erase(held);
}

}  // namespace zel::host
