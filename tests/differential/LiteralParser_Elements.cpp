// What reads the bytes of the input: literals and elementary elements.
#include <algorithm>
#include <cstdio>

#include "differential/LiteralParser.h"
#include "text/ByteClass.h"

namespace kvl {

namespace {

std::string UndoDoubling(const std::string& text, char quote) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        if (text[i] == quote && i + 1 < text.size() && text[i + 1] == quote) ++i;
    }
    return result;
}

std::string ResolveEscapes(const std::string& text) {
    const std::string letters = "nrtvbfa'\"?\\";
    const std::string meanings = "\n\r\t\v\b\f\a'\"?\\";
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t letter =
            text[i] == '\\' && i + 1 < text.size() ? letters.find(text[i + 1]) : std::string::npos;
        if (letter != std::string::npos) {
            result += meanings[letter];
            ++i;
        } else {
            result += text[i];
            // The character behind a backslash that is no escape stays with it.
            if (text[i] == '\\' && i + 1 < text.size()) result += text[++i];
        }
    }
    return result;
}

bool IsLetterOfName(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsAcceptedIdentifier(const std::string& token) {
    if (token.empty() || !(IsLetterOfName(token[0]) || token[0] == '_')) return false;
    std::size_t i = 0;
    while (i < token.size() && token[i] == '_')
        ++i;
    return i == token.size() || IsLetterOfName(token[i]);
}

bool IsAcceptedInteger(const std::string& token) {
    int value = 0;
    return !token.empty() && std::sscanf(token.c_str(), "%d", &value) == 1;
}

bool IsAcceptedFloat(const std::string& token) {
    float value = 0;
    return !token.empty() && std::sscanf(token.c_str(), "%f", &value) == 1;
}

}  // namespace

// --- input ---

bool LiteralParser::GetChar(char& c) {
    Step();
    if (IsAtEnd()) {
        c = '\0';
        return false;
    }
    c = input_[static_cast<std::size_t>(cursor_)];
    ++cursor_;
    return true;
}

void LiteralParser::SkipInvisible() {
    while (!IsAtEnd() && IsInvisible(input_[static_cast<std::size_t>(cursor_)])) {
        Step();
        ++cursor_;
    }
}

std::string LiteralParser::Between(int first, int behind) const {
    if (first >= behind) return std::string();
    return input_.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(behind - first));
}

void LiteralParser::Step() {
    if (--stepsLeft_ < 0) throw OverBudget();
}

// --- literals and elementary elements ---

bool LiteralParser::ParseLeaf(int row, bool store) {
    const int kind = Variable(row).elementKind;
    return kind == kElementStrictLiteral || kind == kElementWeakLiteral ? ParseLiteral(row)
                                                                        : ParseElementary(row, store);
}

bool LiteralParser::ParseLiteral(int row) {
    const int p = cursor_;
    const bool isStrict = Variable(row).elementKind == kElementStrictLiteral;
    const std::string inner = UndoDoubling(WithoutQuotes(row), isStrict ? '"' : '\'');
    int start = -1;
    int end = -1;
    const bool ok = isStrict ? MatchStrict(ResolveEscapes(inner), start, end) : MatchWeak(inner, start, end, true);
    if (!ok) return LiteralFailed(row, p);
    SetSpan(row, start, end - 1);
    return true;
}

std::string LiteralParser::WithoutQuotes(int row) const {
    const std::string declared(Variable(row).GetText());
    return declared.substr(1, declared.size() - 2);
}

bool LiteralParser::LiteralFailed(int row, int cursor) {
    cursor_ = cursor;
    return Fail(ParseFault::kLiteral, row);
}

bool LiteralParser::MatchStrict(const std::string& literal, int& start, int& end) {
    std::string read;
    while (read.size() < literal.size()) {
        char c = '\0';
        if (!GetChar(c)) return false;
        read += c;
    }
    if (read != literal) return false;
    end = cursor_;
    start = end - static_cast<int>(literal.size());
    return true;
}

bool LiteralParser::MatchWeak(const std::string& literal, int& start, int& end, bool anchored) {
    start = end = -1;
    std::size_t j = 0;
    int p = cursor_;
    bool eof = false;
    bool matched = false;
    while (!eof) {
        if (!IsInvisible(literal[0])) SkipInvisible();
        matched = false;
        start = cursor_;
        bool ok = false;
        while (!matched && !eof) {
            ok = IsInvisible(literal[j]) ? MatchWhiteRun(literal, j, matched, eof)
                                         : MatchVisibleRun(literal, j, matched, eof);
            end = cursor_;
            if (!ok && anchored) return false;
            if (!ok) break;
        }
        if (ok) break;
        // The cursor stays: a match that overlaps a failed start is not seen.
        Step();
        j = 0;
        ++p;
        if (p >= Length()) eof = true;
    }
    return matched;
}

bool LiteralParser::MatchVisibleRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof) {
    while (!matched && !eof) {
        if (IsAtEnd()) eof = true;
        char c = '\0';
        if (!GetChar(c) || c != literal[j]) return false;
        ++j;
        if (j == literal.size())
            matched = true;
        else if (IsInvisible(literal[j]))
            break;
    }
    return true;
}

bool LiteralParser::MatchWhiteRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof) {
    while (!matched && IsInvisible(literal[j])) {
        ++j;
        if (j == literal.size()) matched = true;
    }
    const int from = cursor_;
    SkipInvisible();
    if (IsAtEnd()) eof = true;
    return cursor_ > from;
}

bool LiteralParser::ParseElementary(int row, bool store) {
    SetSpan(row, cursor_, cursor_);
    const int kind = Variable(row).elementKind;
    if (kind == kElementString || kind == kElementWhiteSpace) SlotOf(row).text.clear();

    std::string token;
    bool stopped = false;  // by a character that has been read and does not belong to the token
    bool accepted = false;
    switch (kind) {
        case kElementString:
            stopped = ReadWord(token);
            accepted = !token.empty();
            break;
        case kElementBool:
            stopped = ReadWord(token);
            accepted = token == "TRUE" || token == "FALSE";
            break;
        case kElementInteger:
            stopped = ReadNumber(token, 0);
            accepted = IsAcceptedInteger(token);
            break;
        case kElementFloat:
            stopped = ReadNumber(token, 1);
            accepted = IsAcceptedFloat(token);
            break;
        case kElementIdentifier:
            stopped = ReadIdentifier(token);
            accepted = IsAcceptedIdentifier(token);
            break;
        case kElementWhiteSpace:
            stopped = ReadWhiteSpace(token);
            accepted = !token.empty();
            break;
        default:
            break;
    }
    if (!accepted) return Fail(ParseFault::kElement, row);
    SlotOf(row).text = token;
    SlotOf(row).spanEnd = cursor_ - 1;
    StoreValue(row, token, store);
    if (stopped) --cursor_;
    return true;
}

bool LiteralParser::GetFirstVisible(char& c) {
    while (GetChar(c))
        if (!IsInvisible(c)) return true;
    return false;
}

bool LiteralParser::ReadWord(std::string& token) {
    char c = '\0';
    if (!GetFirstVisible(c)) return false;
    token += c;
    while (GetChar(c)) {
        if (IsInvisible(c)) return true;
        token += c;
    }
    return false;
}

bool LiteralParser::ReadNumber(std::string& token, int pointsAllowed) {
    char c = '\0';
    if (!GetFirstVisible(c)) return false;
    token += c;
    if (!IsDigit(c) && c != '+' && c != '-') return false;
    while (GetChar(c)) {
        if (c == '.' && pointsAllowed > 0)
            --pointsAllowed;
        else if (!IsDigit(c))
            return true;
        token += c;
    }
    return false;
}

bool LiteralParser::ReadIdentifier(std::string& token) {
    char c = '\0';
    if (!GetFirstVisible(c)) return false;
    token += c;
    while (GetChar(c)) {
        if (!IsLetterOfName(c) && !IsDigit(c) && c != '_') return true;
        token += c;
    }
    return false;
}

bool LiteralParser::ReadWhiteSpace(std::string& token) {
    char c = '\0';
    while (GetChar(c)) {
        if (!IsInvisible(c)) return true;
        token += c;
    }
    return false;
}

}  // namespace kvl
