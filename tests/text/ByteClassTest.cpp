#include "text/ByteClass.h"

#include <gtest/gtest.h>

#include <string>

namespace kvl {
namespace {

TEST(ByteClassTest, EveryByteHasItsClass) {
    const std::string special = "\xA7\xA9\xB0\xB5\xC4\xD6\xDC\xDF\xE4\xF6\xFC";
    for (int value = 0; value < 256; ++value) {
        const char c = static_cast<char>(value);
        const bool isSpecial = special.find(c) != std::string::npos;
        EXPECT_EQ(IsSpecialLetter(c), isSpecial) << value;
        EXPECT_EQ(IsInvisible(c), !isSpecial && (value <= 0x20 || value >= 0x7F)) << value;
        const bool letter = (value >= 65 && value <= 90) || value == 95 || (value >= 97 && value <= 122);
        EXPECT_EQ(IsLetter(c), letter) << value;
        EXPECT_EQ(IsNameByte(c), letter || (value >= 48 && value <= 57)) << value;
    }
}

TEST(ByteClassTest, Identifiers) {
    for (const char* text : {"a", "_", "_9", "Name_1"})
        EXPECT_TRUE(IsIdentifier(text)) << text;
    for (const char* text : {"", "9a", "a b", "a:b", "\xC4", "a-"})
        EXPECT_FALSE(IsIdentifier(text)) << text;
}

}  // namespace
}  // namespace kvl
