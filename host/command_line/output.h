// Numbers, tables and files as the commands write them. Everything a program may read has a decimal point.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace zel::host {

// Fixed decimals; a value that is not a number gives an empty text, and there is no minus before a zero.
std::string fixed(double value, int decimals);
// The shortest decimal text that reads back as the value.
std::string shortest(double value);
// At most so many significant digits, without trailing zeros.
std::string significant(double value, int digits);

// Writes the file whole or not at all: what stood there before stays until the new content is complete on
// disk. "-" is standard output. Throws CommandFailure.
void writeFile(const std::string& path, const std::function<void(std::ostream&)>& write);

struct FileToWrite {
  std::string path;  // as for writeFile
  std::function<void(std::ostream&)> write;
};
// The same for several that belong together: the first takes its place when all are complete on disk, so
// that one that cannot be written leaves the others as they were.
void writeFiles(const std::vector<FileToWrite>& files);

// Whether two paths name one file, through links too; it need not exist.
bool isSameFile(const std::string& a, const std::string& b);

// Of the path's last part, with its dot and in lower case; empty without one.
std::string extensionOf(const std::string& path);

// Throws CommandFailure when what was written to standard output did not get there.
void finishStandardOutput();

// One line on standard error, headed by the program's name; line breaks in it become "; ".
void note(std::string_view text);

}  // namespace zel::host
