#include "text/Numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace kvl {
namespace {

struct IntegerRow {
    std::string_view text;
    std::int32_t value;
    bool starts;
};

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

constexpr IntegerRow kIntegerRows[] = {
    {"", 0, false},
    {"0", 0, true},
    {" \t\n\v\f\r-12x", -12, true},
    {"+7.9", 7, true},
    {"007", 7, true},
    {"+-7", 0, false},
    {"- 7", 0, false},
    {"-", 0, false},
    {"x1", 0, false},
    {"0x10", 0, true},
    {"2147483647", 2147483647, true},
    {"2147483648", kSmallest, true},
    {"4294967298", 2, true},
    {"-4294967298", -2, true},
    {"9223372036854775807", -1, true},
    {"9223372036854775808", -1, true},
    {"-9223372036854775808", 0, true},
    {"-99999999999999999999999", 0, true},
    {std::string_view("1\0"
                      "2",
                      3),
     1, true},
    {"\xA0"
     "5",
     0, false},
};

TEST(NumbersTest, ReadInteger) {
    for (const IntegerRow& row : kIntegerRows) {
        EXPECT_EQ(ReadInteger(row.text), row.value) << row.text;
        EXPECT_EQ(StartsInteger(row.text), row.starts) << row.text;
    }
}

// The C library in its plain locale is the measure.
TEST(NumbersTest, ReadFloatAsTheCLibrary) {
    constexpr const char* kTexts[] = {
        "",
        "1",
        " \t-1.5e3z",
        "+.5",
        "5.",
        ".",
        "-",
        "+-1",
        "--1",
        "-+1",
        "1e",
        "1e+",
        "1e400",
        "-1e400",
        "1e-400",
        "-1e-400",
        "4.9e-324",
        "2e-324",
        "inf",
        "-INFINITY",
        "+infx",
        "nan",
        "-nan(12)",
        "nanx",
        "0x1p4",
        "-0x.8",
        "0x",
        "0xg",
        "0x1p9999",
        "0X1.8P+1z",
        "1,5",
        "0.1",
        "123456789012345678901234567890",
        "1e5",
        "9007199254740993",
        "in",
        "e5",
        "- 1",
        "1 2",
        "-0",
        "0x1p-1075",
    };
    for (const char* text : kTexts) {
        char* end = nullptr;
        const double expected = std::strtod(text, &end);
        const double value = ReadFloat(text);
        EXPECT_EQ(StartsFloat(text), end != text) << text;
        EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
        EXPECT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected))) << text << " " << value;
    }
    EXPECT_EQ(ReadFloat(std::string_view("12.5", 2)), 12.0);
    EXPECT_EQ(ReadFloat("1" + std::string(400, '0') + "e-400"), 1.0);
}

TEST(NumbersTest, FloatTextAsPrintf) {
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        char expected[64];
        std::snprintf(expected, sizeof expected, "%g", static_cast<double>(value));
        ASSERT_EQ(FloatText(value), expected);
    }
    EXPECT_EQ(FloatText(100000.0F), "100000");
    EXPECT_EQ(FloatText(1000000.0F), "1e+06");
    EXPECT_EQ(FloatText(0.1F), "0.1");
    EXPECT_EQ(FloatText(-0.0F), "-0");
    EXPECT_EQ(FloatText(1e-5F), "1e-05");
}

TEST(NumbersTest, TruncateHoldsAtTheEnds) {
    EXPECT_EQ(TruncateToInteger(-1.9), -1);
    EXPECT_EQ(TruncateToInteger(2147483647.9), 2147483647);
    EXPECT_EQ(TruncateToInteger(2147483648.0), kSmallest);
    EXPECT_EQ(TruncateToInteger(-2147483648.9), kSmallest);
    EXPECT_EQ(TruncateToInteger(-1e300), kSmallest);
    EXPECT_EQ(TruncateToInteger(std::nan("")), kSmallest);
}

}  // namespace
}  // namespace kvl
