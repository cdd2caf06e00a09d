#include "typeschema/FastParser.h"

#include <algorithm>

#include "text/ByteClass.h"
#include "text/Trim.h"
#include "typeschema/ElementReaders.h"
#include "typeschema/LiteralText.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

namespace {

// An attempt below this many elements is as quickly made again as looked up.
constexpr std::size_t kWorthRemembering = 24;

}  // namespace

FastParser::FastParser(CTypeSchema& schema) : schema_(schema), program_(schema) {
    const std::size_t rows = schema.elements.size();
    rowTexts_.assign(rows, {-1, 0, 0});
    searches_.resize(rows);
    listRuns_.resize(rows);
    window_.text = schema.input.GetText();
    window_.end = schema.input.GetLength();
    window_.cursor = schema.input.GetCursor();
    for (int row = 0; row < program_.Size(); ++row) {
        if (program_[row].list) program_[row].list->KeepInput(schema.input.SharedText());
    }
}

bool FastParser::Parse() {
    schema_.rootSpanEnd = window_.cursor;
    const bool matched = ParseRange(0, program_.Size());
    schema_.input.SetCursor(window_.cursor);
    PublishTexts();
    return matched;
}

bool FastParser::ParseRange(int from, int to) {
    if (from >= to) return false;
    for (int row = from; row < to; row = program_.Behind(row)) {
        if (!ParseElement(row)) return false;
    }
    return true;
}

bool FastParser::ParseElement(int row) {
    ++steps_;
    const int kind = program_[row].kind;
    if (kind == kElementStrictLiteral || kind == kElementWeakLiteral) return ParseLiteral(row);
    if (kind >= kElementString) return ParseElementary(row);
    return IsFailureExpected() ? ParseRemembered(row) : ParseCategory(row);
}

bool FastParser::ParseRemembered(int row) {
    const int start = window_.cursor;
    if (!memo_.Empty()) {
        const TrialMemo::Outcome* known = memo_.Find(row, start, window_.end);
        if (known && (!known->matched || shortcutsAllowed_)) {
            const RowText* texts = memo_.TextsOf(*known);
            for (std::uint32_t i = 0; i < known->textCount; ++i)
                SetText(texts[i].row, texts[i].begin, texts[i].end);
            window_.cursor = known->cursor;
            if (known->matched) ++shortcuts_;
            return known->matched;
        }
    }
    const std::size_t stepsBefore = steps_;
    const std::size_t textsBefore = MarkTexts();
    const bool matched = ParseCategory(row);
    if (steps_ - stepsBefore >= kWorthRemembering) {
        memo_.Add(row, start, window_.end, matched, window_.cursor, textLog_.data() + textsBefore,
                  textLog_.size() - textsBefore);
    }
    return matched;
}

bool FastParser::ParseCategory(int row) {
    switch (program_[row].kind) {
        case kElementSequence:
        case kElementRecursion:
            return ParseSequence(row);
        case kElementNested:
            return ParseNested(row);
        case kElementDistance:
        case kElementStream:
            return ParseText(row);
        case kElementChoice:
            return ParseChoice(row);
        case kElementOption:
            return ParseOption(row);
        case kElementLine:
            return ParseLine(row);
        case kElementList:
            return ParseList(row);
        case kElementPermutation:
            return ParsePermutation(row);
        default:
            return false;
    }
}

bool FastParser::ParseLiteral(int row) {
    const ParseRow& literal = program_[row];
    const int start = window_.cursor;
    if (literal.literal.empty()) return ReportEmptyLiteral(schema_, row, window_);
    const LiteralMatch match = literal.kind == kElementStrictLiteral
                                   ? MatchStrict(window_, literal.literal)
                                   : MatchWeak(window_, literal.literal, MatchPlace::Anchored);
    if (match.found) return true;
    window_.cursor = start;
    return IsFailureExpected() ? false : ReportLiteral(schema_, row, window_);
}

bool FastParser::ParseElementary(int row) {
    const ParseRow& element = program_[row];
    if (element.kind == kElementString || element.kind == kElementWhiteSpace) {
        SetText(row, window_.cursor, window_.cursor);
    }
    const Token token = ReadElement(window_, element.kind);
    if (!token.accepted) return IsFailureExpected() ? false : ReportElement(schema_, row, window_);
    SetText(row, token.begin, token.end);
    if (element.column >= 0) cells_.push_back({element.column, window_.Between(token.begin, token.end)});
    return true;
}

// --- categories that match their elements once ---

bool FastParser::ParseSequence(int row) {
    const int start = window_.cursor;
    const bool matched = ParseRange(row + 1, program_[row].end);
    CloseText(row, start, window_.cursor, matched);
    return matched;
}

bool FastParser::ParseOption(int row) {
    const ParseRow& option = program_[row];
    const int start = window_.cursor;
    SetText(row, start, start);
    if (row == 0) schema_.rootSpanEnd = start;
    const bool cannotBegin =
        option.insideSilent && !window_.IsAtEnd() && option.insideFirst.Excludes(window_.At(start));
    if (cannotBegin) return true;
    if (!Try(row + 1, option.end)) {
        window_.cursor = start;
        SetText(row, start, start);
        return true;
    }
    CloseText(row, start, window_.cursor, true);
    return true;
}

bool FastParser::ParseLine(int row) {
    if (!program_[row].keepsWhiteSpace) {
        window_.SkipInvisible();
        if (window_.IsAtEnd()) return true;
    }
    const InputWindow whole = window_;
    const int start = window_.cursor;
    const int lineFeed = window_.Find("\n", start);
    const int lineEnd = lineFeed < 0 ? window_.end : lineFeed;
    window_.begin = start;
    window_.end = start + static_cast<int>(TrimInvisibleEnd(window_.Between(start, lineEnd)).size());
    const bool matched = ParseRange(row + 1, program_[row].end);
    window_ = whole;
    window_.cursor = lineFeed < 0 ? window_.end : lineFeed + 1;
    CloseText(row, start, window_.cursor, matched);
    return matched;
}

bool FastParser::ParseNested(int row) {
    const ParseRow& nested = program_[row];
    const int start = window_.cursor;
    SetText(row, start, start);
    ClearTextsInside(row);
    const std::string_view begin = BareLiteralText(program_[row + 1].variable->GetText());
    if (!MatchWeak(window_, begin, MatchPlace::Anchored).found) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportLiteral(schema_, row + 1, window_);
    }
    const InputWindow behindBegin = window_;
    if (row + 2 < nested.end - 1 && !ParseRange(row + 2, nested.end - 1)) {
        return IsFailureExpected() ? false : ReportNestedElements(schema_, row, window_);
    }
    const int contentStart = window_.cursor;
    int contentEnd = contentStart;
    if (!FindNestedEnd(row, contentEnd)) {
        if (IsFailureExpected()) return false;
        return ReportNoEndLiteral(schema_, row, window_, LineOfCursor(behindBegin));
    }
    CloseText(row, contentStart, contentEnd, true);
    return true;
}

namespace {

// The next occurrence of a bracket. It stays valid while the search moves on inside a stretch without a possible start.
class NextBracket {
public:
    explicit NextBracket(std::string_view literal) : literal_(literal) {}

    // Where the last search that found nothing ended.
    int EndOfSearch() const { return endOfSearch_; }

    const LiteralMatch& From(InputWindow window) {
        const int from = window.cursor;
        const bool stillAhead = known_ && clean_ && (!match_.found || from <= match_.start);
        if (stillAhead) return match_;
        const int firstByte = window.Find(literal_.substr(0, 1), from);
        match_ = MatchWeak(window, literal_, MatchPlace::Anywhere);
        if (!match_.found) match_.start = -1;
        endOfSearch_ = window.cursor;
        clean_ = !IsInvisible(literal_.front()) && firstByte == match_.start;
        known_ = true;
        return match_;
    }

private:
    std::string_view literal_;
    LiteralMatch match_;
    int endOfSearch_ = -1;
    bool known_ = false;
    bool clean_ = false;
};

}  // namespace

// Counts brackets from the cursor to the one that closes; `endStart` is where that begins.
bool FastParser::FindNestedEnd(int row, int& endStart) {
    NextBracket begin(BareLiteralText(program_[row + 1].variable->GetText()));
    NextBracket end(BareLiteralText(program_[program_[row].end - 1].variable->GetText()));
    for (int depth = 1; depth > 0;) {
        const LiteralMatch& nextBegin = begin.From(window_);
        const LiteralMatch& nextEnd = end.From(window_);
        // Of blanks alone a begin literal is found in nothing, too: that would open brackets for ever.
        const bool beginFound = nextBegin.found && nextBegin.end > window_.cursor;
        if (!beginFound && !nextEnd.found) {
            window_.cursor = end.EndOfSearch();
            return false;
        }
        const bool isBegin =
            !nextEnd.found || (beginFound && (nextBegin.start < nextEnd.start ||
                                              (nextBegin.start == nextEnd.start && nextBegin.end < nextEnd.end)));
        depth += isBegin ? 1 : -1;
        window_.cursor = isBegin ? nextBegin.end : nextEnd.end;
        endStart = nextEnd.start;
    }
    return true;
}

// --- taking back, texts ---

bool FastParser::Try(int from, int to) {
    const Mark mark = Now();
    const int start = window_.cursor;
    const std::size_t shortcutsBefore = shortcuts_;
    ++expected_;
    bool matched = ParseRange(from, to);
    const bool outermost = expected_ == 1;
    if (matched && outermost && shortcuts_ != shortcutsBefore) {
        TakeBack(mark);
        window_.cursor = start;
        shortcutsAllowed_ = false;
        matched = ParseRange(from, to);
        shortcutsAllowed_ = true;
    }
    --expected_;
    if (!matched) TakeBack(mark);
    if (outermost && matched) Commit();
    if (outermost) DropTexts();
    return matched;
}

void FastParser::TakeBack(const Mark& mark) {
    cells_.resize(mark.cells);
    while (added_.size() > mark.records) {
        program_[added_.back()].list->TakeBackParsedRecord();
        added_.pop_back();
    }
}

void FastParser::Commit() {
    added_.clear();
    DropTexts();
    if (!memo_.Empty()) memo_.Clear();
}

void FastParser::SetText(int row, int begin, int end) {
    if (!program_[row].showsText) return;
    const RowText text{row, begin, end};
    rowTexts_[static_cast<std::size_t>(row)] = text;
    if (!IsFailureExpected()) return;
    if (textLog_.size() > textMark_ && textLog_.back().row == row) {
        textLog_.back() = text;
    } else {
        textLog_.push_back(text);
    }
}

void FastParser::ClearTextsInside(int row) {
    if (program_[row].insideSilent) return;
    for (int inside = row + 1; inside < program_[row].end; ++inside)
        SetText(inside, 0, 0);
}

void FastParser::CloseText(int row, int begin, int end, bool matched) {
    const ParseRow& category = program_[row];
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    const bool isStored = matched && category.column >= 0;
    if (!category.showsText && !isStored) return;
    const std::string_view text = TrimInvisible(window_.Between(begin, end));
    const int first = static_cast<int>(text.data() - window_.text.data());
    if (text.empty()) {
        SetText(row, begin, begin);
        return;
    }
    SetText(row, first, first + static_cast<int>(text.size()));
    if (isStored) cells_.push_back({category.column, text});
}

// Texts stay places in the input; the variables keep it alive.
void FastParser::PublishTexts() {
    for (const RowText& text : rowTexts_) {
        if (text.row < 0) continue;
        auto& variable = static_cast<CVariableText&>(*program_[text.row].variable);
        variable.SetPlace(schema_.input.SharedText(), window_.Between(text.begin, text.end));
    }
}

}  // namespace kvl
