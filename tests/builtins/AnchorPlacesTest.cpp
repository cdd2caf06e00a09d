// The places of many anchors at once, against a search for each of them.
#include "builtins/AnchorPlaces.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kvl {
namespace {

struct World {
    const char* name;
    std::size_t anchors;
    std::size_t longest;
    const char* letters;
    bool isExact;  // false: some anchors may be taken for present, where all places look alike or only ends count
    bool isNumbered = false;
};

const World kWorlds[] = {
    {"Digits", 2000, 7, "0123456789", true}, {"Tokens", 500, 40, "abc \n", true},
    {"Lines", 300, 3000, "abcdefgh", true},  {"Long", 30, 30000, "abcdefgh", true},
    {"VeryLong", 20, 140000, "ab", false},   {"Runs", 400, 300, "                                        a", false},
    {"Blanks", 300, 500, " ", false},        {"Columns", 300, 500, " ", false, true},
};

class AnchorWorld : public testing::TestWithParam<World> {
protected:
    std::string MakeText(std::size_t size) {
        std::string text;
        while (text.size() < size)
            text += world.letters[random() % std::char_traits<char>::length(world.letters)];
        return text;
    }

    World world = GetParam();
    std::mt19937 random{1};
};

// A third of the anchors stand in the text, a third with a byte changed, a third not.
TEST_P(AnchorWorld, EqualsASearchForEach) {
    std::vector<std::string> texts;
    std::string text;
    for (std::size_t i = 0; i < world.anchors; ++i) {
        const std::size_t widest = world.longest >> (random() % 3 * 3);
        std::string& anchor = texts.emplace_back(world.isNumbered ? std::to_string(i) : "");
        anchor += MakeText(1 + widest - random() % (widest / 2 + 1));
        if (i % 3 == 0) continue;
        text += anchor + (i % 2 == 0 ? "<>" : "");
        if (i % 3 == 1) anchor[random() % anchor.size()] = 'X';
    }
    const std::vector<std::string_view> anchors(texts.begin(), texts.end());
    const AnchorPlaces places(anchors, text);
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const std::size_t last = text.rfind(anchors[i]);
        const bool isThere = last != std::string::npos;
        ASSERT_TRUE(!isThere || places.MayBeginBehind(i, last)) << anchors[i];
        if (world.isExact) {
            ASSERT_FALSE(places.MayBeginBehind(i, isThere ? last + 1 : 0)) << anchors[i];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Worlds, AnchorWorld, testing::ValuesIn(kWorlds),
                         [](const auto& world) { return std::string(world.param.name); });

}  // namespace
}  // namespace kvl
