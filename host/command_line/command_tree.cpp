#include "command_line/command_tree.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "zel/settings.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

// Checks that name what they allow follow the value's name behind a colon: "NAME:{png,svg}".
std::string valueName(const std::string& typeName) { return typeName.substr(0, typeName.find(':')); }

Json choicesIn(const std::string& typeName) {
  Json choices = Json::array();
  const std::size_t begin = typeName.find(":{");
  const std::size_t end = typeName.find('}', begin == std::string::npos ? begin : begin + 2);
  if (begin == std::string::npos || end == std::string::npos) return choices;
  std::istringstream list(typeName.substr(begin + 2, end - begin - 2));
  for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
  return choices;
}

Json optionNames(const CLI::Option& option) {
  Json names = Json::array();
  if (option.get_positional()) names.push_back(option.get_name());
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

Json optionJson(const CLI::Option& option) {
  const bool takesValue = option.get_items_expected_max() > 0;
  return {{"names", optionNames(option)},
          {"value", takesValue ? valueName(option.get_type_name()) : ""},
          {"choices", choicesIn(option.get_type_name())},
          {"default", option.get_default_str()},
          {"description", option.get_description()},
          {"required", option.get_required()},
          {"repeatable", option.get_items_expected_max() > 1}};
}

Json commandJson(const CLI::App& command) {
  Json json{{"name", command.get_name()},     {"description", command.get_description()},
            {"footer", command.get_footer()}, {"options", Json::array()},
            {"arguments", Json::array()},     {"commands", Json::array()}};
  for (const CLI::Option* option : command.get_options([](const CLI::Option*) { return true; }))
    json[option->get_positional() ? "arguments" : "options"].push_back(optionJson(*option));
  for (const CLI::App* child : command.get_subcommands([](const CLI::App*) { return true; }))
    json["commands"].push_back(commandJson(*child));
  return json;
}

Json settingsJson() {
  Json settings = Json::array();
  for (const SettingDescription& setting : knownSettings())
    settings.push_back({{"name", setting.section + "/" + setting.key},
                        {"default", setting.defaultText},
                        {"unit", setting.unit},
                        {"range", setting.range},
                        {"meaning", setting.meaning}});
  return settings;
}

}  // namespace

std::string commandTree(const CLI::App& program, const std::string& version) {
  Json json = commandJson(program);
  json["version"] = version;
  json["settings"] = settingsJson();
  return json.dump(2) + "\n";
}

}  // namespace zel::host
