#include "command_line/number_list.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

namespace zel::host {
namespace {

using nlohmann::json;

TEST(NumberList, IsTakenOutOfTheText) {
  const auto list = takeNumberList("{\"a\":1, \"list\" : [1, -2.5 ,3e2\t] ,\"b\":[5]}", "list");
  ASSERT_TRUE(list);
  EXPECT_EQ(list->values, (std::vector<double>{1, -2.5, 300}));
  EXPECT_EQ(list->rest, "{\"a\":1, \"list\" : [] ,\"b\":[5]}");
}

TEST(NumberList, IsNothingForWhatTheParserShallJudge) {
  for (const char* text : {"",
                           "{}",
                           "{\"list\"",
                           "{\"list\":",
                           "{\"list\":5}",
                           "{\"list\":[",
                           "{\"list\":[]}",
                           "{\"list\":[1",
                           "{\"list\":[1,",
                           "{\"list\":[1,]}",
                           "{\"list\":[,1]}",
                           "{\"list\":[1 2]}",
                           "{\"list\":[1;2]}",
                           "{\"list\":[\"1\"]}",
                           "{\"list\":[null]}",
                           "{\"list\":[[1]]}",
                           "{\"list\":[1,{}]}",
                           "{\"list\":{}}",
                           "{\"lis\":[1]}",
                           "{\"\\u006cist\":[1]}",
                           "{\"a\":\"list\",\"list\":[1]}"})
    EXPECT_FALSE(takeNumberList(text, "list")) << text;
  EXPECT_FALSE(takeNumberList(std::string_view("{\"list\":[1,\0 2]}", 15), "list"));
  // The text goes on in memory, but not for the reader.
  EXPECT_FALSE(takeNumberList(std::string_view("{\"list\":[1]").substr(0, 10), "list"));
}

// A number is taken where the parser takes it, and then has its value.
TEST(NumberList, HasTheNumbersOfTheParserAndNoOthers) {
  for (const char* number : {"0",
                             "-0",
                             "-0.0",
                             "00",
                             "01",
                             "-01",
                             "0.5",
                             ".5",
                             "-.5",
                             "5.",
                             "5.e1",
                             "5e",
                             "5e+",
                             "5e+1",
                             "5E-1",
                             "5e1.5",
                             "+5",
                             "--5",
                             "-",
                             "inf",
                             "-inf",
                             "nan",
                             "NaN",
                             "0x10",
                             "1_0",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "4.9e-324",
                             "1e308",
                             "9007199254740993",
                             "18446744073709551615",
                             "18446744073709551616",
                             "-9223372036854775808",
                             "-9223372036854775809",
                             "123456789012345678901234567890",
                             "0e5",
                             "1 5"}) {
    const std::string text = std::string("{\"list\":[") + number + "]}";
    const json parsed = json::parse(text, nullptr, false);
    const auto list = takeNumberList(text, "list");
    if (list) {
      ASSERT_FALSE(parsed.is_discarded()) << number;
      EXPECT_EQ(list->values, parsed["list"].get<std::vector<double>>()) << number;
    }
  }
  for (const char* number : {"0", "-0.0", "0.5", "5e+1", "5E-1", "9007199254740993", "0e5", "-12.25"})
    EXPECT_TRUE(takeNumberList(std::string("{\"list\":[") + number + "]}", "list")) << number;
}

TEST(NumberList, HasTheParsersValuesToTheLastBit) {
  std::mt19937_64 random(1);
  json wanted;
  for (int i = 0; i < 20000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (std::isnormal(value)) wanted["list"].push_back(value);
    wanted["list"].push_back(static_cast<std::int64_t>(random()));
    wanted["list"].push_back(static_cast<double>(random() % 1000000) / 1000);
  }
  const std::string text = wanted.dump();
  const auto list = takeNumberList(text, "list");
  ASSERT_TRUE(list);
  EXPECT_EQ(list->values, json::parse(text)["list"].get<std::vector<double>>());
  EXPECT_EQ(list->rest, "{\"list\":[]}");
}

}  // namespace
}  // namespace zel::host
