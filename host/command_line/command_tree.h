// A command line as data: every command with its options, arguments and texts, as --help shows them.
//
//   {"name": "terrain-profiler", "version": "0.1.0", "description": "...", "footer": "...",
//    "options": [{"names": ["-o", "--output"], "value": "FILE.csv", "choices": ["png", "svg"], "default":
//    "-",
//                 "description": "...", "required": true, "repeatable": false}, ...],
//    "arguments": [the same with one name and without dashes], "commands": [the same again, without a
//    version], "settings": [{"name": "Profile/Prf_Freq", "default": "950", "unit": "MHz", "range": "...",
//                  "meaning": "..."}, ...]}
//
// "value" is empty for a flag, "choices" when any value may be given, "default" when --help shows none.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace zel::host {

std::string commandTree(const CLI::App& program, const std::string& version);

}  // namespace zel::host
