// What a user may do who is not above the rights of files, and what a writer meets on a full disk, each in a
// process of its own.
#pragma once

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace zel::test {

// The body's result is the process's exit code.
inline int exitCodeAsNobody(const std::function<int()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (::geteuid() == 0 && ::setuid(kNobody) != 0) ::_exit(97);
    ::_exit(body());
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The same where no file may grow larger than so many bytes.
inline int exitCodeWithLargestFile(rlim_t bytes, const std::function<int()>& body) {
  return exitCodeAsNobody([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 96;
    return body();
  });
}

}  // namespace zel::test
