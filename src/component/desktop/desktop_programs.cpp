#include "component/desktop/desktop_programs.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "foundation/runtime_error.h"

namespace zel {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestMessages = 4096;  // bytes that are kept

RuntimeError startError(const std::string& program, int systemError) {
  const RuntimeError error = systemError == ENOENT   ? RuntimeError::fileNotFound()
                             : systemError == EACCES ? RuntimeError::permissionDenied()
                                                     : RuntimeError::pathFileAccessError();
  return {error.number(), error.description() + ": cannot start \"" + program + "\" (" +
                              std::generic_category().message(systemError) + ")"};
}

bool mayBeRun(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

// A name without a slash is looked for along PATH, as the shell does it. Nothing where it is nowhere.
std::string alongPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string folders = path != nullptr ? path : "/usr/bin:/bin";
  folders += ':';
  for (std::size_t begin = 0, end; (end = folders.find(':', begin)) != std::string::npos; begin = end + 1) {
    const std::string folder = folders.substr(begin, end - begin);
    const std::string candidate = (folder.empty() ? "." : folder) + "/" + name;
    if (mayBeRun(candidate)) return candidate;
  }
  return {};
}

std::string programPath(const std::string& program) {
  const std::string path = program.find('/') == std::string::npos ? alongPath(program) : program;
  if (path.empty() || program.empty()) throw startError(program, ENOENT);
  return path;
}

// A program with its arguments as the system takes them; looks into the call.
class ArgumentList {
 public:
  explicit ArgumentList(const ProgramCall& call) {
    list_.push_back(const_cast<char*>(call.program.c_str()));
    for (const std::string& argument : call.arguments) list_.push_back(const_cast<char*>(argument.c_str()));
    list_.push_back(nullptr);
  }
  char* const* get() const { return list_.data(); }

 private:
  std::vector<char*> list_;
};

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(); }
  int get() const { return number_; }
  bool open() const { return number_ >= 0; }
  int release() { return std::exchange(number_, -1); }
  void close() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_;
};

// Read end and written end, neither in the place of a standard stream that the host has closed.
std::array<int, 2> makePipe(const std::string& program) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw startError(program, errno);
  const Descriptor low0(ends[0]), low1(ends[1]);
  Descriptor read(::fcntl(low0.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  Descriptor written(::fcntl(low1.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (!read.open() || !written.open()) throw startError(program, errno);
  return {read.release(), written.release()};
}

// What the host has done to signals is not the program's.
sigset_t ownSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, SIGPIPE);
  ::sigaddset(&signals, SIGINT);
  ::sigaddset(&signals, SIGQUIT);
  ::sigaddset(&signals, SIGTERM);
  return signals;
}

// --- a program that is waited for ---

struct SpawnActions {
  SpawnActions() { ::posix_spawn_file_actions_init(&value); }
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&value); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  posix_spawn_file_actions_t value{};
};

struct SpawnAttributes {
  SpawnAttributes() { ::posix_spawnattr_init(&value); }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&value); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  posix_spawnattr_t value{};
};

pid_t spawn(const ProgramCall& call, int messages) {
  SpawnActions actions;
  ::posix_spawn_file_actions_addopen(&actions.value, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions.value, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions.value, messages, STDERR_FILENO);
  ::posix_spawn_file_actions_addclosefrom_np(&actions.value, STDERR_FILENO + 1);

  SpawnAttributes attributes;
  sigset_t none;
  ::sigemptyset(&none);
  const sigset_t defaults = ownSignals();
  ::posix_spawnattr_setflags(&attributes.value,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  ::posix_spawnattr_setpgroup(&attributes.value, 0);
  ::posix_spawnattr_setsigmask(&attributes.value, &none);
  ::posix_spawnattr_setsigdefault(&attributes.value, &defaults);

  pid_t process = 0;
  const std::string path = programPath(call.program);
  const int error = ::posix_spawn(&process, path.c_str(), &actions.value, &attributes.value,
                                  ArgumentList(call).get(), environ);
  if (error != 0) throw startError(call.program, error);
  return process;
}

// Reads what is there; closes at the end of it.
void takeMessages(Descriptor& from, std::string& messages) {
  std::array<char, 4096> buffer{};
  const ssize_t count = ::read(from.get(), buffer.data(), buffer.size());
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count <= 0) {
    from.close();
    return;
  }
  const std::size_t room = kLongestMessages - std::min(messages.size(), kLongestMessages);
  messages.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
}

class RunningProgram {
 public:
  RunningProgram(pid_t process, int messages) : process_(process), messages_(messages) {
    ::fcntl(messages, F_SETFL, O_NONBLOCK);
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  ~RunningProgram() {
    if (!ended_) end();
  }

  ProgramOutcome waitUntil(Clock::time_point latest, const KeepWaiting& keepWaiting) {
    while (!hasEnded() && Clock::now() < latest && (!keepWaiting || keepWaiting())) listen();
    if (!ended_) end();
    if (messages_.open()) takeMessages(messages_, outcome_.messages);
    return std::move(outcome_);
  }

 private:
  bool hasEnded() {
    int status = 0;
    const pid_t found = ::waitpid(process_, &status, WNOHANG);
    if (found == 0 || (found < 0 && errno == EINTR)) return false;
    ended_ = outcome_.finished = true;
    // A host that has its children reaped for it leaves no status: the program has ended, and that is all.
    if (found < 0) return true;
    outcome_.crashed = WIFSIGNALED(status);
    outcome_.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    return true;
  }

  // A moment, or until it writes or closes its standard error.
  void listen() {
    constexpr int kMoment = 5;  // milliseconds
    pollfd waited{messages_.get(), POLLIN, 0};
    if (::poll(&waited, messages_.open() ? 1 : 0, kMoment) > 0) takeMessages(messages_, outcome_.messages);
  }

  void end() {
    ::kill(-process_, SIGKILL);
    ended_ = true;
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
  }

  pid_t process_;
  Descriptor messages_;
  bool ended_ = false;
  ProgramOutcome outcome_;
};

// --- a program that is left to itself ---

// In the child of a child: only calls that are safe there, nothing that allocates.
[[noreturn]] void become(const char* path, char* const* arguments, int report) {
  ::setsid();
  const sigset_t defaults = ownSignals();
  struct sigaction plain {};
  plain.sa_handler = SIG_DFL;
  for (int signal = 1; signal < NSIG; ++signal)
    if (::sigismember(&defaults, signal) == 1) ::sigaction(signal, &plain, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (int number = 0; number <= STDERR_FILENO; ++number) ::dup2(nothing, number);
  // The report closes when the program has taken over.
  ::dup2(report, STDERR_FILENO + 1);
  ::fcntl(STDERR_FILENO + 1, F_SETFD, FD_CLOEXEC);
  ::close_range(STDERR_FILENO + 2, ~0U, 0);
  ::execve(path, arguments, environ);
  const int error = errno;
  const ssize_t written = ::write(STDERR_FILENO + 1, &error, sizeof error);
  ::_exit(written == sizeof error ? 127 : 126);
}

}  // namespace

ProgramOutcome DesktopPrograms::run(const ProgramCall& call, std::int32_t milliseconds,
                                    const KeepWaiting& keepWaiting) {
  const auto latest = Clock::now() + std::chrono::milliseconds(milliseconds);
  const std::array<int, 2> messages = makePipe(call.program);
  Descriptor written(messages[1]);
  int read = messages[0];
  pid_t process = 0;
  try {
    process = spawn(call, written.get());
  } catch (...) {
    ::close(read);
    throw;
  }
  RunningProgram program(process, read);
  written.close();
  return program.waitUntil(latest, keepWaiting);
}

void DesktopPrograms::start(const ProgramCall& call) {
  const std::string path = programPath(call.program);
  const ArgumentList arguments(call);
  const std::array<int, 2> report = makePipe(call.program);
  Descriptor read(report[0]);
  Descriptor written(report[1]);
  const pid_t between = ::fork();
  if (between < 0) throw startError(call.program, errno);
  if (between == 0) {
    const pid_t program = ::fork();
    if (program == 0) become(path.c_str(), arguments.get(), written.get());
    ::_exit(program < 0 ? 1 : 0);
  }
  written.close();
  int status = 0;
  while (::waitpid(between, &status, 0) < 0 && errno == EINTR) continue;
  int error = 0;
  ssize_t count = 0;
  while ((count = ::read(read.get(), &error, sizeof error)) < 0 && errno == EINTR) continue;
  if (count == sizeof error) throw startError(call.program, error);
  if (WIFEXITED(status) && WEXITSTATUS(status) != 0) throw startError(call.program, EAGAIN);
}

}  // namespace zel
