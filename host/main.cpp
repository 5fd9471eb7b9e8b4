#include <csignal>

#include "command_line/command_line.h"

int main(int argc, char** argv) {
  // A file that grows beyond what the user may have is a write that fails, is told, and leaves nothing
  // behind.
  std::signal(SIGXFSZ, SIG_IGN);
  return zel::host::runCommandLine(argc, argv);
}
