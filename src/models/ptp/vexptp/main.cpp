#include <iostream>
#include <string>
#include <vector>

#include "models/ptp/vexptp/program.h"

int main(int argc, char** argv) {
  const std::vector<std::string> items(argv + (argc > 0 ? 1 : 0), argv + argc);
  return zel::ptp::runProgram(items, std::cout, std::cerr);
}
