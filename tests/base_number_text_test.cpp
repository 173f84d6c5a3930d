#include "base/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace {

using namespace std::string_literals;

TEST(BaseNumberText, RealText) {
    const std::pair<double, const char*> rows[] = {
        {-0.0, "-0.0"},
        {1.0, "1.0"},
        {-2.5, "-2.5"},
        {1.0 / 3.0, "0.3333333333333333"},
        {100000.0, "100000.0"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {999999999999999.0, "999999999999999.0"},
        {1e15, "1e+15"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {-std::numeric_limits<double>::infinity(), "-inf"}};
    for (const auto& [value, text] : rows)
        EXPECT_EQ(base::real_text(value), text);
}

TEST(BaseNumberText, RealsReadBackExactly) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 100'000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const std::string text = base::real_text(value);
        ASSERT_EQ(base::parse_real(text), value) << text;
        ASSERT_NE(text.find_first_of(".e"), text.npos) << text;
    }
}

TEST(BaseNumberText, ParseReal) {
    const std::string zeros(400, '0');
    const std::pair<std::string, double> good[] = {
        {"1", 1.0},      {" \t1.5\r\n", 1.5},       {"+2.", 2.0},
        {".5", 0.5},     {"-.5e1", -5.0},           {"1E+3", 1000.0},
        {"1e-400", 0.0}, {"0." + zeros + "1", 0.0}, {"0.1e-99999999999999999999", 0.0},
        {"0e999", 0.0},  {"-1e-400", -0.0},         {"1" + zeros + "e-800", 0.0}};
    for (const auto& [text, value] : good) {
        const auto read = base::parse_real(text);
        EXPECT_EQ(read, value) << text;
        EXPECT_EQ(std::signbit(read.value_or(0)), std::signbit(value)) << text;
    }
    for (const std::string& text :
         {""s, "  "s, "+"s, "+-1"s, "."s, "1,5"s, "1.5x"s, "1 2"s, "1e"s, "nan"s, "-inf"s, "0x10"s, "1e400"s,
          "1" + zeros, "0." + zeros + "1e800", "1e99999999999999999999"s})
        EXPECT_EQ(base::parse_real(text), std::nullopt) << text;
}

TEST(BaseNumberText, ParseInteger) {
    const std::pair<const char*, std::int64_t> good[] = {
        {"    70", 70},
        {"-5 ", -5},
        {"+7", 7},
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()}};
    for (const auto& [text, value] : good)
        EXPECT_EQ(base::parse_integer(text), value) << text;
    for (const char* const text : {"", "-", "--1", "1.0", "1 2", "0x1", "9223372036854775808"})
        EXPECT_EQ(base::parse_integer(text), std::nullopt) << text;
}

} // namespace
