#include "models/ptp/vexptp/input_text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "foundation/runtime_error.h"

namespace zel::ptp {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void failReading(const std::string& path, const std::string& reason) {
  throw InputError("cannot read " + path + ": " + reason);
}

std::string systemText(int systemError) { return std::generic_category().message(systemError); }

bool isPrintable(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code >= 0x20 && code < 0x7F;
}

}  // namespace

std::string boundedFile(const std::string& path, std::size_t mostBytes) {
  std::error_code failure;
  const auto status = std::filesystem::status(path, failure);
  if (failure) failReading(path, failure.message());
  if (std::filesystem::is_directory(status)) failReading(path, "it is a folder");
  if (!std::filesystem::is_regular_file(status)) failReading(path, "it is not a plain file");
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) failReading(path, systemText(errno));
  // One byte more tells a longer file.
  std::string bytes(mostBytes + 1, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
  if (std::ferror(file.get()) != 0) failReading(path, systemText(EIO));
  if (bytes.size() > mostBytes) failReading(path, "it has more than " + std::to_string(mostBytes) + " bytes");
  return bytes;
}

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
  }
  return lines;
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t kShown = 40;  // bytes
  std::string shown(text.substr(0, kShown));
  for (char& byte : shown)
    if (!isPrintable(byte)) byte = '?';
  return '"' + shown + (text.size() > kShown ? "...\"" : "\"");
}

std::string lineName(std::size_t index) { return "line " + std::to_string(index + 1); }

}  // namespace zel::ptp
