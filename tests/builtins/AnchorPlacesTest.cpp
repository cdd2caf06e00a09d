// The places of many anchors at once, against a search for each of them.
#include "builtins/AnchorPlaces.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kvl {
namespace {

// A third of the anchors stand in the text, a third with a byte changed, a third not.
TEST(AnchorPlaces, EqualASearchForEach) {
    constexpr struct {
        std::size_t anchors, longest;
        std::string_view letters;
        bool isExact;  // false: some anchors may be taken for present, where all places look alike or only ends count
        bool isNumbered = false;
    } kWorlds[] = {
        {2000, 7, "0123456789", true}, {500, 40, "abc \n", true},
        {300, 3000, "abcdefgh", true}, {30, 30000, "abcdefgh", true},
        {20, 140000, "ab", false},     {400, 300, "                                        a", false},
        {300, 500, " ", false},        {300, 500, " ", false, true},
    };
    for (const auto& world : kWorlds) {
        std::mt19937 random(1);
        std::vector<std::string> texts;
        std::string text;
        for (std::size_t i = 0; i < world.anchors; ++i) {
            const std::size_t widest = world.longest >> (random() % 3 * 3);
            std::string& anchor = texts.emplace_back(world.isNumbered ? std::to_string(i) : "");
            for (std::size_t size = anchor.size() + 1 + widest - random() % (widest / 2 + 1); anchor.size() < size;)
                anchor += world.letters[random() % world.letters.size()];
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
            ASSERT_FALSE(world.isExact && places.MayBeginBehind(i, isThere ? last + 1 : 0)) << anchors[i];
        }
    }
}

}  // namespace
}  // namespace kvl
