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

using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kLongestMessages = 4096;  // bytes that are kept

RuntimeError startError(const std::string& program, int systemError) {
  const RuntimeError error = systemError == ENOENT   ? RuntimeError::fileNotFound()
                             : systemError == EACCES ? RuntimeError::permissionDenied()
                                                     : RuntimeError::pathFileAccessError();
  return {error.number(), error.description() + ": cannot start \"" + program + "\" (" +
                              std::generic_category().message(systemError) + ")"};
}

// 0 is no error.
void require(int error, const std::string& program) {
  if (error != 0) throw startError(program, error);
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

// What the host ignores or holds back is no matter of the program's: it begins with every signal as the
// system has it.
sigset_t everySignal() {
  sigset_t signals;
  ::sigfillset(&signals);
  return signals;
}

// --- a program that is waited for ---

struct SpawnActions {
  explicit SpawnActions(const std::string& program) {
    require(::posix_spawn_file_actions_init(&value), program);
  }
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&value); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  posix_spawn_file_actions_t value{};
};

struct SpawnAttributes {
  explicit SpawnAttributes(const std::string& program) { require(::posix_spawnattr_init(&value), program); }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&value); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  posix_spawnattr_t value{};
};

pid_t spawn(const ProgramCall& call, int messages) {
  const auto made = [&call](int error) { require(error, call.program); };
  SpawnActions actions(call.program);
  made(::posix_spawn_file_actions_addopen(&actions.value, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
  made(::posix_spawn_file_actions_addopen(&actions.value, STDOUT_FILENO, "/dev/null", O_WRONLY, 0));
  made(::posix_spawn_file_actions_adddup2(&actions.value, messages, STDERR_FILENO));
  made(::posix_spawn_file_actions_addclosefrom_np(&actions.value, STDERR_FILENO + 1));

  SpawnAttributes attributes(call.program);
  sigset_t none;
  ::sigemptyset(&none);
  const sigset_t defaults = everySignal();
  made(::posix_spawnattr_setflags(&attributes.value,
                                  POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  made(::posix_spawnattr_setpgroup(&attributes.value, 0));
  made(::posix_spawnattr_setsigmask(&attributes.value, &none));
  made(::posix_spawnattr_setsigdefault(&attributes.value, &defaults));

  pid_t process = 0;
  const std::string path = programPath(call.program);
  made(::posix_spawn(&process, path.c_str(), &actions.value, &attributes.value, ArgumentList(call).get(),
                     environ));
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

  ProgramOutcome waitUntil(SteadyClock::time_point latest, const KeepWaiting& keepWaiting) {
    while (!hasEnded() && SteadyClock::now() < latest && (!keepWaiting || keepWaiting())) listen();
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

// The processes between the host and the program come from _Fork, which runs none of the host's handlers of
// forks: those may wait for locks that another thread holds. The host's handlers of signals run in none of
// them either: every signal is held back until they are taken away.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    const sigset_t all = everySignal();
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsHeldBack() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t before_{};
};

// From here to startFirst(): in a child, only calls that are safe there, nothing that allocates.

[[noreturn]] void endWithReport(int report, int error) {
  const ssize_t written = ::write(report, &error, sizeof error);
  ::_exit(written == sizeof error ? 127 : 126);
}

[[noreturn]] void become(const char* path, char* const* arguments, int report) {
  ::setsid();
  struct sigaction plain {};
  plain.sa_handler = SIG_DFL;
  // Those that cannot be set are as they should be.
  for (int signal = 1; signal < NSIG; ++signal) ::sigaction(signal, &plain, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (int number = 0; number <= STDERR_FILENO; ++number) ::dup2(nothing, number);
  // The report closes when the program has taken over.
  ::dup2(report, STDERR_FILENO + 1);
  ::fcntl(STDERR_FILENO + 1, F_SETFD, FD_CLOEXEC);
  ::close_range(STDERR_FILENO + 2, ~0U, 0);
  ::execve(path, arguments, environ);
  endWithReport(STDERR_FILENO + 1, errno);
}

// A child whose own child becomes the program, and is nobody's when the first one ends, which is at once.
// Less than 0: an error's number, negated.
pid_t startFirst(const char* path, char* const* arguments, int report) {
  const SignalsHeldBack held;
  const pid_t first = ::_Fork();
  if (first != 0) return first > 0 ? first : -errno;
  const pid_t program = ::_Fork();
  if (program == 0) become(path, arguments, report);
  if (program < 0) endWithReport(report, errno);
  ::_exit(0);
}

// Why the program could not be started: an error's number, 0 when it has taken over. Nothing said for some
// seconds is taken for that too: a process that another thread has forked meanwhile holds the report open for
// as long as it lives.
int readReport(const Descriptor& report) {
  using std::chrono::milliseconds;
  const auto latest = SteadyClock::now() + std::chrono::seconds(3);
  pollfd waited{report.get(), POLLIN, 0};
  int ready = 0;
  do {
    const auto left = std::chrono::duration_cast<milliseconds>(latest - SteadyClock::now());
    ready = ::poll(&waited, 1, static_cast<int>(std::max(left, milliseconds(0)).count()));
  } while (ready < 0 && errno == EINTR);
  if (ready <= 0) return 0;
  int error = 0;
  ssize_t count = 0;
  while ((count = ::read(report.get(), &error, sizeof error)) < 0 && errno == EINTR) continue;
  return count == sizeof error ? error : 0;
}

}  // namespace

ProgramOutcome DesktopPrograms::run(const ProgramCall& call, std::int32_t milliseconds,
                                    const KeepWaiting& keepWaiting) {
  const auto latest = SteadyClock::now() + std::chrono::milliseconds(milliseconds);
  const std::array<int, 2> messages = makePipe(call.program);
  Descriptor read(messages[0]), written(messages[1]);
  const pid_t process = spawn(call, written.get());
  RunningProgram program(process, read.release());
  written.close();
  return program.waitUntil(latest, keepWaiting);
}

void DesktopPrograms::start(const ProgramCall& call) {
  const std::string path = programPath(call.program);
  const ArgumentList arguments(call);
  const std::array<int, 2> report = makePipe(call.program);
  const Descriptor read(report[0]);
  Descriptor written(report[1]);
  const pid_t first = startFirst(path.c_str(), arguments.get(), written.get());
  if (first < 0) throw startError(call.program, -first);
  written.close();
  while (::waitpid(first, nullptr, 0) < 0 && errno == EINTR) continue;
  require(readReport(read), call.program);
}

}  // namespace zel
