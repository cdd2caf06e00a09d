#pragma once
// The automaton of the script scanner: the rules for what stands between two dollar signs, the longest match first.

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace kvl {

class POUTX_scan {
protected:
    // Outcomes of a match that are no token of the grammar.
    enum Outcome : int { kSkipped = -10, kLineEnd, kQuote };

    struct CodeMatch {
        int outcome = kSkipped;   // a token or an Outcome
        std::size_t length = 1;   // bytes of the match
        std::size_t fetched = 1;  // bytes looked at to know that nothing longer matches; may be one more than there are
    };

    // The match at the front of `rest`, which is not empty. Linear in what is looked at.
    static CodeMatch MatchCode(std::string_view rest);

    // How many bytes at the front of `text` are members of the class.
    template <class Class>
    static std::size_t CountFront(std::string_view text, Class isMember) {
        return static_cast<std::size_t>(std::ranges::find_if_not(text, isMember) - text.begin());
    }

private:
    static CodeMatch MatchName(std::string_view rest);
    static CodeMatch MatchNumber(std::string_view rest);
    static CodeMatch MatchSymbol(std::string_view rest);
};

// The name of a token in the grammar, for dumps.
std::string_view ScriptTokenName(int token);

}  // namespace kvl
