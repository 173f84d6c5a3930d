#include "base/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace {

TEST(BaseNumberText, RealText) {
    const struct {
        double value;
        const char* text;
    } rows[] = {
        {0.0, "0.0"},
        {-0.0, "-0.0"},
        {1.0, "1.0"},
        {-2.5, "-2.5"},
        {0.1, "0.1"},
        {1.0 / 3.0, "0.3333333333333333"},
        {100000.0, "100000.0"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {999999999999999.0, "999999999999999.0"},
        {1e15, "1e+15"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(base::real_text(row.value), row.text);
}

TEST(BaseNumberText, RealsReadBackExactly) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 100'000; ++round) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        const std::string text = base::real_text(value);
        const auto back = base::parse_real(text);
        ASSERT_TRUE(back) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(*back), std::bit_cast<std::uint64_t>(value)) << text;
        ASSERT_NE(text.find_first_of(".e"), text.npos) << text;
    }
}

TEST(BaseNumberText, ParseReal) {
    const std::string zeros(400, '0');
    const struct {
        std::string text;
        std::optional<double> value;
    } rows[] = {
        {"1", 1.0},
        {" \t1.5\r\n", 1.5},
        {"+2.", 2.0},
        {".5", 0.5},
        {"-.5e1", -5.0},
        {"1E+3", 1000.0},
        {"1e-400", 0.0},
        {"0." + zeros + "1", 0.0},
        {"0.1e-99999999999999999999", 0.0},
        {"1e400", {}},
        {"1" + zeros, {}},
        {"0." + zeros + "1e800", {}},
        {"1e99999999999999999999", {}},
        {"1" + zeros + "e-800", 0.0},
        {"0e999", 0.0},
        {"", {}},
        {"  ", {}},
        {"+", {}},
        {"+-1", {}},
        {".", {}},
        {"1,5", {}},
        {"1.5x", {}},
        {"1 2", {}},
        {"1e", {}},
        {"nan", {}},
        {"-inf", {}},
        {"0x10", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(base::parse_real(row.text), row.value) << row.text;
    EXPECT_TRUE(std::signbit(base::parse_real("-1e-400").value()));
}

TEST(BaseNumberText, ParseInteger) {
    const struct {
        const char* text;
        std::optional<std::int64_t> value;
    } rows[] = {
        {"    70", 70},
        {"-5 ", -5},
        {"+7", 7},
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
        {"9223372036854775808", {}},
        {"1.0", {}},
        {"", {}},
        {"-", {}},
        {"--1", {}},
        {"1 2", {}},
        {"0x1", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(base::parse_integer(row.text), row.value) << row.text;
}

} // namespace
