// A file that another program is about to write anew: what was there is set aside under another name beside
// it, so that it is not taken for the new one, and comes back unless the new one is kept.
//
// Through links it is the file that they lead to; the links stay. Killed in between, the process leaves it
// under that name, which ends in ".part".
#pragma once

#include <string>

namespace zel {

class SetAside {
 public:
  // Throws RuntimeError 75 for what is no regular file and 70 where it cannot be set aside.
  explicit SetAside(const std::string& path);
  SetAside(const SetAside&) = delete;
  SetAside& operator=(const SetAside&) = delete;
  ~SetAside();

  // What the other program is to write.
  const std::string& path() const { return path_; }
  // The new one stays, and what was there before is given up.
  void keepNew();

 private:
  std::string path_;
  std::string aside_;  // empty: nothing was there
  bool newKept_ = false;
};

}  // namespace zel
