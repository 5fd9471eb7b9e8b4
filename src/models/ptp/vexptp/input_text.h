// Texts that the program is given: files of bounded size, their lines, numbers in them, and how a message
// shows a piece of them.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zel::ptp {

// What is wrong with an input, as a sentence without its full stop.
class InputError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The bytes of a file. Throws InputError with the system's reason when it cannot be read, and for one that is
// no plain file or has more bytes than that: a pipe may never end.
std::string boundedFile(const std::string& path, std::size_t mostBytes);

// The lines without their ends, LF or CR LF; what follows the last end is a line when it is not empty.
std::vector<std::string_view> linesOf(std::string_view text);

// In double quotes, on one line: the beginning of a long text, "?" for what is not printable.
std::string inQuotes(std::string_view text);

// "line 7", counted from 1.
std::string lineName(std::size_t index);

}  // namespace zel::ptp
