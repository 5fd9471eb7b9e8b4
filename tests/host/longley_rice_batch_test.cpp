#include "command_line/longley_rice_batch.h"

#include <gtest/gtest.h>

#include <clocale>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace zel::host {
namespace {

using nlohmann::json;

json goodLine() {
  return {
      {"elevations_m", {100, 120.5, 90, 80}}, {"spacing", 5000}, {"tx", 30}, {"rx", 10}, {"frequency", 450}};
}

json answerTo(const std::string& line) { return json::parse(answerBatchLine(line, 3, {}).json); }

std::string errorOf(const std::string& line) {
  const BatchAnswer answer = answerBatchLine(line, 3, {});
  EXPECT_TRUE(answer.failed) << answer.json;
  const json parsed = json::parse(answer.json);
  EXPECT_EQ(parsed.at("line"), 3);
  return parsed.at("error");
}

TEST(BatchLine, GivesTheNumbersOfThePublicFunctionToTheLastBit) {
  LongleyRiceRequest request;
  request.elevationsM = {100, 120.5, 90, 80};
  request.spacingM = 5000;
  request.transmitterHeightM = 30;
  request.receiverHeightM = 10;
  request.frequencyMhz = 450;
  const LongleyRiceResult result = computeLongleyRice(request);
  const json answer = answerTo(goodLine().dump());
  EXPECT_EQ(answer.at("loss_db").get<std::vector<std::vector<double>>>(), result.lossDb);
  EXPECT_EQ(answer.at("reference_attenuation_db").get<double>(), result.referenceAttenuationDb);
  EXPECT_EQ(answer.at("horizon_angles_rad")[0].get<double>(), result.horizonAnglesRad[0]);
  EXPECT_EQ(answer.at("line"), 3);
  EXPECT_FALSE(answer.contains("error"));
  EXPECT_FALSE(answer.contains("id"));
}

TEST(BatchLine, SurvivesAMillionNestedLists) {
  const std::string open(1000000, '[');
  const std::string closed = open + std::string(1000000, ']');
  EXPECT_EQ(errorOf(closed), "the line is not a JSON object");
  EXPECT_NE(errorOf(open).find("the line is not JSON"), std::string::npos);
  EXPECT_EQ(errorOf("{\"elevations_m\":" + closed + "}"),
            "elevations_m must be a list of numbers; number 1 in it is a list");
  EXPECT_EQ(errorOf("{\"id\":" + closed + "}"), "id must be a text or a number, not a list");
  EXPECT_EQ(errorOf("{\"other\":" + closed + "}"), "the key \"other\" is unknown");
}

TEST(BatchLine, SurvivesAMillionNestedObjects) {
  std::string line;
  for (int i = 0; i < 1000000; ++i) line += "{\"a\":";
  EXPECT_NE(errorOf(line).find("the line is not JSON"), std::string::npos);
  EXPECT_EQ(errorOf(line + "1" + std::string(1000000, '}')), "the key \"a\" is unknown");
}

TEST(BatchLine, RefusesInvalidUtf8AndZeroBytes) {
  EXPECT_NE(errorOf("{\"id\":\"\xff\"}").find("the line is not JSON"), std::string::npos);
  EXPECT_NE(errorOf("{\"id\":\"\xc3(\"}").find("the line is not JSON"), std::string::npos);
  EXPECT_NE(errorOf(std::string("{\"id\":\"a\0b\"}", 12)).find("the line is not JSON"), std::string::npos);
  EXPECT_NE(errorOf(std::string("\0", 1)).find("the line is not JSON"), std::string::npos);
}

TEST(BatchLine, TellsTheFirstFaultButKeepsAnIdBehindIt) {
  const json answer = answerTo("{\"spacing\":\"x\",\"foo\":1,\"id\":\"late\"}");
  EXPECT_EQ(answer.at("error"), "spacing must be a number, not \"x\"");
  EXPECT_EQ(answer.at("id"), "late");
}

TEST(BatchLine, KeepsAnErrorWithWhatThePathNameHasInItOneObject) {
  json line = goodLine();
  line.erase("elevations_m");
  line["profile"] = "no\"ne\n\x01.txt";
  EXPECT_EQ(errorOf(line.dump()),
            "profile: cannot read no\"ne\n\x01.txt: No such file or directory; check its name and folder");
  EXPECT_EQ(answerBatchLine(line.dump(), 1, {}).json.find('\n'), std::string::npos);
}

TEST(BatchLine, TellsWhichElementOfAListIsNoNumber) {
  const auto elevations = [](const std::string& list) { return errorOf("{\"elevations_m\":" + list + "}"); };
  const std::string wanted = "elevations_m must be a list of numbers; number ";
  EXPECT_EQ(elevations("[null]"), wanted + "1 in it is null");
  EXPECT_EQ(elevations("[1,-2.5,\"3\",null]"), wanted + "3 in it is \"3\"");
  EXPECT_EQ(elevations("[1,2,true]"), wanted + "3 in it is true");
  EXPECT_EQ(elevations("[1,{\"a\":[1,2]},3]"), wanted + "2 in it is an object");
  EXPECT_EQ(elevations("[1,[],3]"), wanted + "2 in it is a list");
  EXPECT_EQ(elevations("5"), "elevations_m must be a list of numbers, not 5");
  EXPECT_EQ(errorOf("{\"reliability\":[0.5,false]}"),
            "reliability must be a number or a list of numbers; number 2 in it is false");
}

// The same lines with a key that is written in another way, which only the parser knows.
TEST(BatchLine, GivesTheAnswerOfTheParserHoweverItsElevationsAreRead) {
  const std::string rest = ",\"spacing\":900,\"tx\":30,\"rx\":10,\"frequency\":450,\"id\":\"elevations_m\"";
  for (const std::string list :
       {"[1,2,3]", "[ 1.25 ,\t-2e1\r, 0.1,1E-400]", "[]", "[1", "[1,]", "[1,2,3]]", "[01,2]", "[1,1e400]",
        "[1,null]", "[1,2],\"elevations_m\":[3,4]", "[1,2,3],\"other\":[1,2,3]", "[1,-9999,3]", "{}", ""}) {
    const std::string line = "\"elevations_m\":" + list + rest + "}";
    std::string other = line;
    other.replace(1, 1, "\\u0065");
    const json quick = answerTo("{" + line);
    json plain = answerTo("{" + other);
    // The place of the fault lies behind the longer key.
    if (plain.contains("error") && plain["error"].get<std::string>().find("byte") != std::string::npos)
      EXPECT_NE(quick.at("error").get<std::string>().find("byte"), std::string::npos) << list;
    else
      EXPECT_EQ(quick, plain) << list;
  }
}

TEST(BatchLine, TellsThePlaceOfAFaultBehindItsElevations) {
  EXPECT_EQ(errorOf("{\"elevations_m\":[1,2,3],x}"), "the line is not JSON: byte 25, last read: 3],x");
}

TEST(BatchLine, HeadsAnErrorOfTheModelWithItsKey) {
  const auto error = [](const char* key, double value) {
    json line = goodLine();
    line[key] = value;
    return errorOf(line.dump());
  };
  for (const char* key : {"spacing", "tx", "rx", "frequency", "climate", "permittivity", "conductivity",
                          "surface_refractivity", "sea_level_refractivity", "confidence", "reliability"})
    EXPECT_EQ(error(key, -5).find(std::string(key) + ": "), 0U) << error(key, -5);
  EXPECT_EQ(error("spacing", 8e6).find("spacing: the path's length is 24000000 m; "), 0U);
  json line = goodLine();
  line["elevations_m"][2] = -32768;
  EXPECT_EQ(errorOf(line.dump()).find("elevations_m: the elevation of sample 3 is -32768 m; "), 0U);
}

TEST(BatchLine, ReadsAndWritesADecimalPointInAnyLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE"})
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  json line = goodLine();
  line["tx"] = 30.25;
  std::string text = line.dump();
  text.insert(1, "\"id\":1.50,");
  const std::string answer = answerBatchLine(text, 1, {}).json;
  std::setlocale(LC_ALL, before.c_str());
  EXPECT_EQ(answer, answerBatchLine(text, 1, {}).json);
  EXPECT_NE(answer.find("\"id\":1.50,"), std::string::npos);
  EXPECT_NE(answer.find("\"tx_m\":30.25"), std::string::npos);
}

TEST(Batch, AnswersALineAboveTheBoundWithAnErrorAndGoesOn) {
  test::TemporaryFolder folder;
  const std::string path = (folder.path() / "batch.jsonl").string();
  const std::string good = goodLine().dump();
  std::ofstream(path, std::ios::binary) << good << '\n' << std::string(200000, ' ') << "{}\n" << good;
  TextSource source(path);
  std::vector<json> answers;
  const BatchCount count = answerBatch(
      source, {}, [&answers](const std::string& text) { answers.push_back(json::parse(text)); }, 1000);
  EXPECT_EQ(count.lines, 3U);
  EXPECT_EQ(count.errors, 1U);
  ASSERT_EQ(answers.size(), 3U);
  EXPECT_EQ(answers[0].at("line"), 1);
  EXPECT_EQ(answers[1], json({{"line", 2}, {"error", "the line is longer than 1000 bytes"}}));
  EXPECT_EQ(answers[2].at("line"), 3);
  EXPECT_EQ(answers[2].at("loss_db"), answers[0].at("loss_db"));
}

TEST(Batch, EndsWithAnErrorWhereNoLineFeedComes) {
  TextSource source("/dev/zero");
  std::vector<json> answers;
  const BatchCount count = answerBatch(
      source, {}, [&answers](const std::string& text) { answers.push_back(json::parse(text)); }, 1000,
      100000);
  EXPECT_EQ(count.lines, 1U);
  EXPECT_EQ(count.errors, 1U);
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(
      answers[0],
      json({{"line", 1},
            {"error",
             "there is no line feed in 100000 bytes: the batch ends here, and what follows is not read"}}));
}

// What a fuzzer of lines would look for first: each text is cut and changed at every place.
TEST(Batch, AnswersDamagedLinesWithOneObjectEach) {
  json line = goodLine();
  line["confidence"] = {50, 90};
  line["sea_level_refractivity"] = 330;
  line["name"] = "n\u00e4me";
  const std::string text = line.dump();
  for (std::size_t i = 0; i < text.size(); ++i) {
    EXPECT_TRUE(answerBatchLine(text.substr(0, i), 1, {}).failed) << i;
    for (const char c : {'[', '{', '}', '"', ',', ':', '9', '-', '\0', '\xff', ' '}) {
      std::string damaged = text;
      damaged[i] = c;
      const json answer = json::parse(answerBatchLine(damaged, 1, {}).json);
      EXPECT_NE(answer.contains("error"), answer.contains("loss_db")) << damaged;
    }
  }
}

}  // namespace
}  // namespace zel::host
