// A scratch file with a companion beside it, for a program that is given their name; both are gone with this.
//
// They stand in the temporary folder of the user (the environment's "tmp", else TMPDIR, else /tmp) in a
// folder that is named after the host's product and that only the user may enter; it is made where there is
// none, and stays. Where one of that name belongs to someone else or lets others in, a folder of another name
// beside it is made, which goes with this.
//
// Errors are RuntimeErrors with the system's reason: 61 no room, 70 no right, 75 others, 76 no such folder.
#pragma once

#include <filesystem>
#include <string>

namespace zel {

class ScratchFile {
 public:
  explicit ScratchFile(const std::string& product);
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  std::string path() const { return path_.string(); }
  std::string name() const { return path_.filename().string(); }
  std::string companion() const { return path_.string() + ".par"; }

 private:
  std::filesystem::path folder_;
  bool folderIsOurs_ = false;  // to be removed
  std::filesystem::path path_;
};

}  // namespace zel
