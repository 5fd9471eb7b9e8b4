#include "command_line/command_line.h"

int main(int argc, char** argv) { return zel::host::runCommandLine(argc, argv); }
