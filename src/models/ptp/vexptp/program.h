// vexptp.exe: reads the heights of a scratch file and its companion, runs the point-to-point model to every
// sample, and writes the losses and levels to a result file.
//
//     arguments -> scratch_input, companion -> prefix_levels -> result_text
//
// The result is written whole or not at all: a failure leaves what was there.
#pragma once

#include <iosfwd>
#include <span>
#include <string>

namespace zel::ptp {

// Runs the program with its items (its own name not among them), and gives its exit status: 0 done, 1 an
// input that cannot be read or a result that cannot be written, 2 wrong items. A failure is one line on
// `messages`.
int runProgram(std::span<const std::string> items, std::ostream& output, std::ostream& messages);

}  // namespace zel::ptp
