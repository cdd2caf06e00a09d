#pragma once
// The automaton of the type scanner: one rule at the front of a text, the longest match first.

#include <cstddef>
#include <string>
#include <string_view>

namespace kvl {

class PINX_scan {
public:
    // The longest name or run of special letters that is still delivered.
    static constexpr std::size_t kLongestToken = 1049215;
    // Lex gives this for a failure that has been reported.
    static constexpr int kFailed = -2;

protected:
    // Outcomes of a match that are no token of the grammar.
    enum Outcome : int { kSkipped = -10, kDollar, kQuote, kBlockComment };

    struct Match {
        int outcome = kSkipped;   // a token or an Outcome
        std::size_t length = 1;   // bytes of the match
        std::size_t fetched = 1;  // bytes looked at to know that nothing longer matches; may be one more than there are
    };

    // The match at the front of `rest`, which is not empty. Linear in what is looked at.
    static Match MatchFront(std::string_view rest);

private:
    static Match MatchWord(std::string_view rest);
    static Match MatchNamespace(std::string_view rest);
    static Match MatchSlash(std::string_view rest);
    static Match MatchDollar(std::string_view rest);
};

// The name of a token in the grammar, for dumps; a byte stands for itself, "END_OF_INPUT" for 0.
std::string TypeTokenName(int token);

}  // namespace kvl
