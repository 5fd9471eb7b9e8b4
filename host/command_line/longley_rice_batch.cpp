#include "command_line/longley_rice_batch.h"

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_line/command_error.h"
#include "command_line/elevation_file.h"
#include "command_line/longley_rice_report.h"
#include "command_line/number_list.h"
#include "command_line/output.h"
#include "command_line/plain_number.h"

namespace zel::host {
namespace {

using Json = nlohmann::ordered_json;

enum class Kind { kNumber, kLevels, kElevations, kProfile, kPolarization, kIdentity };

struct Key {
  std::string_view name;
  Kind kind;
  std::size_t index;  // among those of its kind
};

constexpr std::size_t kIdentities = 2;

const std::vector<Key>& keys() {
  static const std::vector<Key> all = [] {
    std::vector<Key> list;
    for (std::size_t i = 0; i < kNumberInputs.size(); ++i)
      list.push_back({kNumberInputs[i].key, Kind::kNumber, i});
    for (std::size_t i = 0; i < kLevelsInputs.size(); ++i)
      list.push_back({kLevelsInputs[i].key, Kind::kLevels, i});
    list.push_back({"elevations_m", Kind::kElevations, 0});
    list.push_back({"profile", Kind::kProfile, 0});
    list.push_back({"polarization", Kind::kPolarization, 0});
    list.push_back({"id", Kind::kIdentity, 0});
    list.push_back({"name", Kind::kIdentity, 1});
    return list;
  }();
  return all;
}

const char* wantedValue(Kind kind) {
  switch (kind) {
    case Kind::kNumber:
      return "a number";
    case Kind::kLevels:
      return "a number or a list of numbers";
    case Kind::kElevations:
      return "a list of numbers";
    case Kind::kProfile:
      return "the name of a file";
    case Kind::kPolarization:
      return "\"horizontal\" or \"vertical\"";
    case Kind::kIdentity:
      break;
  }
  return "a text or a number";
}

// A number as the parser hands it on has the decimal point of the process's locale.
std::string jsonNumber(std::string text) {
  for (char& c : text)
    if (std::string_view("0123456789eE+-").find(c) == std::string_view::npos) c = '.';
  return text;
}

// Takes the values of one line as the parser meets them: no tree is made, so that neither a long list nor a
// deep one costs more than its text. What cannot be used is kept as the line's problem, the first one; the
// rest is read on for the line's id.
class LineContent {
 public:
  LongleyRiceInputs inputs;
  std::array<std::string, kIdentities> identities;  // "id" and "name" as JSON, empty when not given
  std::string problem;                              // what is wrong with the line; empty: nothing
  std::string profile;                              // empty when not given

  // What nlohmann::json::sax_parse calls.
  bool null() { return expects(Kind::kIdentity) ? identity("null") : wrongValue("null"); }
  bool boolean(bool value) {
    const char* json = value ? "true" : "false";
    return expects(Kind::kIdentity) ? identity(json) : wrongValue(json);
  }
  bool number_integer(std::int64_t value) {
    return expects(Kind::kIdentity) ? identity(std::to_string(value)) : number(static_cast<double>(value));
  }
  bool number_unsigned(std::uint64_t value) {
    return expects(Kind::kIdentity) ? identity(std::to_string(value)) : number(static_cast<double>(value));
  }
  bool number_float(double value, const std::string& text) {
    return expects(Kind::kIdentity) ? identity(jsonNumber(text)) : number(value);
  }
  bool string(std::string& value) {
    return expects(Kind::kIdentity) ? identity(Json(value).dump()) : text(value);
  }
  bool binary(nlohmann::json::binary_t&) { return wrongValue("binary data"); }
  bool start_object(std::size_t) {
    if (depth_++ > 0) wrongValue("an object");
    list_ = false;
    return true;
  }
  bool end_object() {
    --depth_;
    return true;
  }
  bool start_array(std::size_t) {
    if (!expects(Kind::kElevations) && !expects(Kind::kLevels)) wrongValue("a list");
    list_ = expects(Kind::kElevations) || expects(Kind::kLevels);
    ++depth_;
    if (list_) values_.clear();
    return true;
  }
  bool end_array() {
    if (list_ && key_->kind == Kind::kElevations) inputs.elevations = std::move(values_);
    if (list_ && key_->kind == Kind::kLevels) takeLevels();
    list_ = false;
    --depth_;
    return true;
  }
  bool key(std::string& name) {
    if (depth_ != 1) return true;
    key_ = nullptr;
    for (const Key& known : keys())
      if (known.name == name) key_ = &known;
    if (key_ == nullptr) return fail("the key " + quotedText(name) + " is unknown");
    const std::uint32_t bit = std::uint32_t{1} << (key_ - keys().data());
    if ((seen_ & bit) != 0) fail(name + " is given twice");
    seen_ |= bit;
    return true;
  }
  bool parse_error(std::size_t position, const std::string& token, const nlohmann::json::exception& error) {
    constexpr int kNumberOverflow = 406;
    problem = error.id == kNumberOverflow ? "the number " + printableText(token) + " is too large"
                                          : "the line is not JSON: byte " + std::to_string(position) +
                                                ", last read: " + printableText(token);
    return false;
  }

 private:
  bool fail(const std::string& text) {
    if (problem.empty()) problem = text;
    return true;
  }

  // Without a key nothing of an object has been read, or the key itself was the fault.
  bool wrongValue(const std::string& found) {
    if (!problem.empty()) return true;
    if (key_ == nullptr) return fail("the line is not a JSON object");
    const std::string wanted = std::string(key_->name) + " must be " + wantedValue(key_->kind);
    if (!list_) return fail(wanted + ", not " + found);
    return fail(wanted + "; number " + std::to_string(values_.size() + 1) + " in it is " + found);
  }

  bool expects(Kind kind) const { return depth_ == 1 && key_ != nullptr && key_->kind == kind; }

  bool identity(std::string json) {
    identities[key_->index] = std::move(json);
    return true;
  }

  void takeLevels() {
    const LevelsInput& input = kLevelsInputs[key_->index];
    tryTo([&] { inputs.*input.member = levelsOf(input.key, values_); });
  }

  bool number(double value) {
    if (expects(Kind::kNumber)) {
      inputs.*kNumberInputs[key_->index].member = value;
    } else if (list_) {
      values_.push_back(value);
    } else if (expects(Kind::kLevels)) {
      values_ = {value};
      takeLevels();
    } else {
      wrongValue(shortest(value));
    }
    return true;
  }

  bool text(const std::string& value) {
    if (expects(Kind::kProfile) && !value.empty())
      profile = value;
    else if (expects(Kind::kPolarization))
      tryTo([&] { inputs.polarization = polarizationOf(value); });
    else
      wrongValue(quotedText(value));
    return true;
  }

  template <typename Action>
  void tryTo(Action&& action) {
    if (!problem.empty()) return;
    try {
      action();
    } catch (const InputProblem& fault) {
      fail(fault.key() + ": " + fault.what());
    }
  }

  std::size_t depth_ = 0;
  const Key* key_ = nullptr;    // of the object's value that is being read
  bool list_ = false;           // whether the value is a list that the key takes
  std::vector<double> values_;  // of that list
  std::uint32_t seen_ = 0;      // a bit for each of keys()
};

void readProfile(LineContent& content) {
  if (content.profile.empty()) return;
  if (content.inputs.elevations)
    throw InputProblem("profile", "elevations_m are given too; give one of the two");
  if (content.profile == "-")
    throw InputProblem("profile", "the profile of a line is a file, or the list elevations_m");
  try {
    content.inputs.elevations = readElevations(content.profile);
  } catch (const CommandFailure& failure) {
    throw InputProblem("profile", failure.what());
  }
  content.inputs.profile = content.profile;
}

// What the model refuses, headed by the key that the value came by.
std::string errorText(const LongleyRiceTask& task, const LongleyRiceResult& result) {
  if (result.parameter == "elevationsM" && !task.profile.empty())
    return "profile: " + (task.profile == "-" ? "standard input" : task.profile) + ": " + result.error;
  if (result.parameter.empty()) return result.error;
  return keyOfRequestMember(result.parameter) + ": " + result.error;
}

// The loss of a line as a JSON object; what is wrong with the line goes into content.problem.
Json answerOf(LineContent& content, const LongleyRiceInputs& defaults) {
  try {
    readProfile(content);
    const LongleyRiceTask task = completeTask(content.inputs, defaults);
    const LongleyRiceResult result = computeLongleyRice(task.request);
    if (result.error.empty()) return longleyRiceJson(task, result);
    content.problem = errorText(task, result);
  } catch (const InputProblem& fault) {
    content.problem = fault.key() + ": " + fault.what();
  }
  return {};
}

std::string dumped(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

// The members of an object behind those that every answer has.
BatchAnswer headed(std::size_t number, const LineContent& content, const Json& json) {
  BatchAnswer answer;
  answer.json = "{\"line\":" + std::to_string(number);
  constexpr std::array<const char*, kIdentities> kNames{"id", "name"};
  for (std::size_t i = 0; i < kIdentities; ++i)
    if (!content.identities[i].empty())
      answer.json += std::string(",\"") + kNames[i] + "\":" + content.identities[i];
  answer.failed = !content.problem.empty();
  answer.json += "," + dumped(answer.failed ? Json{{"error", content.problem}} : json).substr(1);
  return answer;
}

LineContent parsed(std::string_view line) {
  LineContent content;
  nlohmann::json::sax_parse(line.begin(), line.end(), &content);
  return content;
}

// The elevations are most of a line. Where they are plain numbers and nothing is wrong with the rest, this is
// what the parser makes of the whole.
LineContent contentOf(std::string_view line) {
  if (auto list = takeNumberList(line, "elevations_m")) {
    LineContent content = parsed(list->rest);
    if (content.problem.empty()) {
      content.inputs.elevations = std::move(list->values);
      return content;
    }
  }
  return parsed(line);
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace

BatchAnswer answerBatchLine(std::string_view line, std::size_t number, const LongleyRiceInputs& defaults) {
  LineContent content = contentOf(line);
  Json json;
  if (content.problem.empty()) json = answerOf(content, defaults);
  return headed(number, content, json);
}

BatchCount answerBatch(TextSource& source, const LongleyRiceInputs& defaults,
                       const std::function<void(const std::string& json)>& answer, std::size_t longestLine,
                       std::size_t mostSkipped) {
  BatchCount count;
  LineReader reader(source, longestLine, mostSkipped);
  while (reader.next()) {
    BatchAnswer line;
    if (reader.tooLong()) {
      LineContent content;
      content.problem = "the line is longer than " + std::to_string(longestLine) + " bytes";
      if (reader.endless())
        content.problem = "there is no line feed in " + std::to_string(mostSkipped) +
                          " bytes: the batch ends here, and what follows is not read";
      line = headed(reader.number(), content, {});
    } else if (isBlank(reader.line())) {
      continue;
    } else {
      line = answerBatchLine(reader.line(), reader.number(), defaults);
    }
    ++count.lines;
    if (line.failed) ++count.errors;
    answer(line.json);
  }
  return count;
}

}  // namespace zel::host
