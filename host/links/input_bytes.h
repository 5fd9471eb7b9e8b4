// The file that is read, or standard input, and how far reading has come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace zel::host {

// The text names the file and says why.
class LinkFileError : public std::runtime_error {
 public:
  explicit LinkFileError(const std::string& what);
  ~LinkFileError() override;
};

// Everything throws LinkFileError.
class InputBytes {
 public:
  // "-" is standard input.
  explicit InputBytes(const std::string& name);
  InputBytes(const InputBytes&) = delete;
  InputBytes& operator=(const InputBytes&) = delete;
  ~InputBytes();

  const std::string& title() const { return title_; }  // the name, or "standard input"
  // Of a file; nothing of what has no size and can be read once only (standard input, a pipe).
  std::optional<std::uint64_t> size() const { return size_; }
  std::uint64_t position() const { return position_; }
  // A number that is the same for the same content, by reading all of a file that has a size.
  std::uint64_t fingerprint();

  // Appends what there is; false at the end, and once `stop` says so, which is asked while nothing comes.
  bool read(std::string& buffer, const std::function<bool()>& stop);
  // Whether read() would not wait: there is something, or the end.
  bool ready() const;

 private:
  std::string title_;
  int descriptor_ = -1;
  bool owned_ = false;
  std::optional<std::uint64_t> size_;
  std::uint64_t position_ = 0;
};

}  // namespace zel::host
