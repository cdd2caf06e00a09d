#include "text/RandomSource.h"

#include <gtest/gtest.h>

#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

// The numbers that the authors of the generator give for checking, behind 20000 draws.
TEST(RandomSourceTest, DrawsThePublishedNumbers) {
    RandomSource source;
    RandomSeed(source, 1802, 9373);
    for (int i = 0; i < 20000; ++i)
        RandomNext(source);
    for (double expected : {6533892.0, 14220222.0, 7275067.0, 6172232.0, 8354498.0, 10633180.0})
        EXPECT_EQ(RandomNext(source) * 4096.0 * 4096.0, expected);
}

TEST(RandomSourceTest, SeedsOutsideTheirRangesAreReplaced) {
    RandomSource fresh;
    const double first = RandomNext(fresh);
    const int pairs[][2] = {{-1, 5}, {31329, 5}, {5, -1}, {5, 30082}};
    for (const auto& pair : pairs) {
        RandomSource source;
        RandomSeed(source, pair[0], pair[1]);
        EXPECT_EQ(RandomNext(source), first) << pair[0];
    }
    RandomSource atTheEnds;
    RandomSeed(atTheEnds, 31328, 30081);
    EXPECT_NE(RandomNext(atTheEnds), first);
}

// The example of FIPS-197, appendix C.1.
TEST(RandomSourceTest, EncryptsTheStandardBlock) {
    std::array<unsigned char, 16> key{}, block{};
    for (unsigned char i = 0; i < 16; ++i) {
        key[i] = i;
        block[i] = static_cast<unsigned char>(i * 0x11);
    }
    const std::array<unsigned char, 16> expected = {0x69, 0xC4, 0xE0, 0xD8, 0x6A, 0x7B, 0x04, 0x30,
                                                    0xD8, 0xCD, 0xB7, 0x80, 0x70, 0xB4, 0xC5, 0x5A};
    EXPECT_EQ(EncryptBlock(key, block), expected);
}

// The expected texts were worked out apart from this code, with another cipher library.
TEST(RandomSourceTest, GuidTextsDependOnTimeAndOrderOnly) {
    ScopedPlatform outside;
    outside.surroundings.now = 1700000000;
    for (int run = 0; run < 2; ++run) {
        ResetProcessState();
        EXPECT_EQ(MakeGuidText(), "5669312F_908E_1DAC_F67E_7A3F3149B415");
        EXPECT_EQ(MakeGuidText(), "65BD046B_4707_053A_C9A6_5997213D9181");
    }
    ResetProcessState();
    outside.surroundings.now = 0;
    EXPECT_EQ(MakeGuidText(), "C8AA5C14_FDBA_773E_0F30_BD5FCA91DA9D");
    ResetProcessState();
}

}  // namespace
}  // namespace kvl
