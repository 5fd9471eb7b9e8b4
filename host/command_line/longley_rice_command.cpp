// longley-rice: the irregular terrain model over heights that the user has, for one path or a batch of them.
#include <iostream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "command_line/command_error.h"
#include "command_line/commands.h"
#include "command_line/elevation_file.h"
#include "command_line/longley_rice_batch.h"
#include "command_line/longley_rice_inputs.h"
#include "command_line/longley_rice_report.h"
#include "command_line/output.h"
#include "command_line/plain_number.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

struct LongleyRiceOptions {
  std::string profile, batch, polarization;
  std::map<std::string, std::string> values;  // by the batch's key; empty when not given
  bool json = false;
};

UsageError usageError(const std::string& key, const std::string& text) {
  return UsageError(optionName(key) + ": " + text);
}

// What the options say, all but the elevations.
LongleyRiceInputs parsedOptions(const LongleyRiceOptions& options) {
  LongleyRiceInputs inputs;
  const auto given = [&options](const char* key) -> const std::string& { return options.values.at(key); };
  for (const NumberInput& input : kNumberInputs) {
    if (given(input.key).empty()) continue;
    inputs.*input.member = plainNumber(given(input.key));
    if (!(inputs.*input.member))
      throw InputProblem(input.key, quotedText(given(input.key)) + " is not a number");
  }
  for (const LevelsInput& input : kLevelsInputs)
    if (!given(input.key).empty()) inputs.*input.member = parseLevels(input.key, given(input.key));
  if (!options.polarization.empty()) inputs.polarization = polarizationOf(options.polarization);
  requireOneRefractivity(inputs);
  return inputs;
}

void runBatch(const LongleyRiceOptions& options, const LongleyRiceInputs& defaults) {
  TextSource source(options.batch);
  const BatchCount count = answerBatch(source, defaults, [](const std::string& json) {
    std::cout << json << '\n';
    finishStandardOutput();
  });
  if (count.lines == 0) note(source.title() + " has no lines to answer");
  if (count.errors > 0)
    throw CommandFailure(std::to_string(count.errors) + " of " + std::to_string(count.lines) + " lines of " +
                         source.title() + " could not be computed; their answers say why");
}

void runPath(const LongleyRiceOptions& options, LongleyRiceInputs& inputs) {
  const LongleyRiceTask task = completeTask(inputs, {});
  const LongleyRiceResult result = computeLongleyRice(task.request);
  if (!result.error.empty()) {
    if (result.parameter == "elevationsM" || result.parameter.empty())
      throw CommandFailure((options.profile == "-" ? "standard input" : options.profile) + ": " +
                           result.error);
    throw usageError(keyOfRequestMember(result.parameter), result.error);
  }
  if (options.json)
    std::cout << longleyRiceJson(task, result).dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  else
    printLongleyRice(std::cout, task, result);
}

void runLongleyRice(const LongleyRiceOptions& options) {
  const bool batch = !options.batch.empty();
  if (batch && options.profile == "-" && options.batch == "-")
    throw UsageError("--profile - and --batch - both want standard input; give one of them a file");
  try {
    LongleyRiceInputs inputs = parsedOptions(options);
    if (!batch && options.profile.empty())
      throw UsageError("--profile is missing: a file of elevations, or --batch in its place");
    if (!batch) requireNumbers(inputs, {});
    if (!options.profile.empty()) {
      inputs.profile = options.profile;
      inputs.elevations = readElevations(options.profile);
    }
    if (batch)
      runBatch(options, inputs);
    else
      runPath(options, inputs);
  } catch (const InputProblem& problem) {
    throw usageError(problem.key(), problem.what());
  }
}

}  // namespace

void addLongleyRiceCommand(CLI::App& program) {
  auto options = std::make_shared<LongleyRiceOptions>();
  CLI::App* command = program.add_subcommand(
      "longley-rice", "Longley-Rice (irregular terrain model) loss over given heights, also in batches");
  const auto add = [command](const std::string& name, std::string& value, const std::string& help,
                             const std::string& type) {
    command->add_option(name, value, help)->check(valueProblem)->type_name(type);
  };
  add("--profile", options->profile,
      "Elevations in metres, one a line, transmitter's first; - is standard input", "FILE");
  for (const NumberInput& input : kNumberInputs)
    add(optionName(input.key), options->values[input.key], input.help, input.unit);
  add("--polarization", options->polarization, "horizontal or vertical [horizontal]", "NAME");
  for (const LevelsInput& input : kLevelsInputs)
    add(optionName(input.key), options->values[input.key], input.help, "P,P,...");
  command->add_flag("--json", options->json, "Print the result as JSON");
  add("--batch", options->batch, "Answer JSON objects, one a line; - is standard input", "FILE");
  command->footer(
      "Climates: 1 equatorial, 2 continental subtropical, 3 maritime tropical, 4 desert, 5 continental\n"
      "temperate, 6 maritime temperate over land, 7 maritime temperate over sea.\n"
      "A sea-level refractivity N0 becomes N0 exp(-z / 9460 m) at the path, z its mean height.\n"
      "Levels are fractions above 0 and below 1. A list with a value above 1 is all percent (1,50,99); one\n"
      "that mixes both (0.5,90) is refused, as is 1 without a value above it.\n"
      "A batch's keys are the option names with underscores (spacing, tx, rx, frequency, climate, ...); the\n"
      "list elevations_m stands in place of profile; confidence and reliability are lists; id and name are\n"
      "carried over. Options beside --batch hold for lines that do not say otherwise.\n"
      "Examples:\n"
      "  terrain-profiler longley-rice --profile heights.txt --spacing 90 --tx 30 --rx 10 --frequency 450 "
      "\\\n"
      "      --confidence 0.5,0.9 --reliability 0.5,0.9,0.99\n"
      "  echo '{\"elevations_m\": [120, 131, 118], \"spacing\": 900, \"tx\": 30, \"rx\": 10, \"frequency\": "
      "450}' |\n"
      "      terrain-profiler longley-rice --batch -");
  command->callback([options] { runLongleyRice(*options); });
}

}  // namespace zel::host
