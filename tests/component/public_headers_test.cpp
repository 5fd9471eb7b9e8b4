#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

namespace zel {
namespace {

// A host with no toolkit at all can use the library: its headers name none, and include only each other and
// the standard library. For hosts with one, a header of its own names a single class of it.
TEST(PublicHeaders, IncludeOnlyEachOtherAndTheStandardLibrary) {
  const std::filesystem::path folder = std::filesystem::path(ZEL_SOURCE_DIR) / "include" / "zel";
  const std::regex include("^[ \t]*#[ \t]*include[ \t]*([<\"])([^>\"]+)[>\"].*");
  const std::regex standard("[a-z_]+|std[a-z]+\\.h");
  const std::regex toolkit("\\bQ[A-Z][a-z]\\w*|\\bGDAL\\w*|\\bOGR\\w*|\\bPJ_?\\w*\\b");
  int headers = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".h") continue;
    ++headers;
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) {
      const bool bridge = entry.path().filename() == "qobject.h";
      const std::string named = bridge ? std::regex_replace(line, std::regex("\\bQObject\\b"), "") : line;
      EXPECT_FALSE(std::regex_search(named, toolkit)) << entry.path() << ": " << line;
      std::smatch match;
      if (!std::regex_match(line, match, include)) continue;
      const std::string name = match[2];
      if (match[1] == "<") {
        EXPECT_TRUE(std::regex_match(name, standard)) << entry.path() << ": " << line;
      } else {
        EXPECT_EQ(name.substr(0, 4), "zel/") << entry.path() << ": " << line;
        EXPECT_TRUE(std::filesystem::exists(folder.parent_path() / name)) << entry.path() << ": " << line;
      }
    }
  }
  EXPECT_GE(headers, 5);
}

}  // namespace
}  // namespace zel
