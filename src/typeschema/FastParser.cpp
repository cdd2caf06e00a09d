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
    window_.runs = &runs_;
    for (const ParseRow* row = program_.Begin(); row < program_.End(); ++row) {
        if (row->list) row->list->KeepInput(schema.input.SharedText());
    }
}

bool FastParser::Parse() {
    schema_.rootSpanEnd = window_.cursor;
    bool matched = false;
    try {
        matched = ParseRange(program_.Begin(), program_.End());
    } catch (const TooManyOrders& given) {
        (void)ReportTooManyOrders(schema_, given.row, window_);
    }
    schema_.input.SetCursor(window_.cursor);
    PublishTexts();
    return matched;
}

bool FastParser::ParseRange(const ParseRow* from, const ParseRow* to) {
    if (from >= to) return false;
    for (const ParseRow* row = from; row < to;) {
        if (row->IsPlain()) {
            row = ParsePlain(row, to);
            if (row == nullptr) return false;
        } else {
            if (!ParseElement(*row)) return false;
            row = row->Behind();
        }
    }
    return true;
}

bool FastParser::ParseElement(const ParseRow& row) {
    ++steps_;
    if (row.IsPlain()) return ParsePlain(&row, row.Behind()) != nullptr;
    return IsFailureExpected() ? ParseRemembered(row) : ParseCategory(row);
}

// Plain elements, one behind the other, as far as they go. The first row behind them; null where one did not match.
const ParseRow* FastParser::ParsePlain(const ParseRow* from, const ParseRow* to) {
    const char* const text = window_.text.data();
    const char* const end = text + window_.end;
    const char* at = text + window_.cursor;
    const ParseRow* row = from;
    bool matched = true;
    for (; row < to && row->IsPlain(); row = row->Behind()) {
        if (row->reading == Reading::Token) {
            const Token token = ReadElement(runs_, at, end, row->kind);
            if (row->showsText) ShowToken(*row, at, token);
            at = token.stop;
            matched = token.accepted;
            if (matched && row->column >= 0) cells_.emplace_back(row->column, token.Text());
        } else if (row->reading == Reading::Bytes) {
            const char* const place = row->kind == kElementWeakLiteral ? runs_.EndOf<ByteRun::Invisible>(at, end) : at;
            matched = StartsWith(place, end, row->literal);
            if (matched) at = place + row->jumpLength;
        } else if (row->reading == Reading::SpacedLiteral) {
            const char* const behind = row->literal.empty() ? nullptr : MatchSpaced(runs_, at, end, row->literal);
            matched = behind != nullptr;
            if (matched) at = behind;
        } else {
            window_.cursor = static_cast<int>(at - text);
            matched = ReadToBytes(*row);
            at = text + window_.cursor;
        }
        if (!matched) break;
    }
    steps_ += static_cast<std::size_t>(row - from);
    window_.cursor = static_cast<int>(at - text);
    return matched ? row : FailAt(*row);
}

const ParseRow* FastParser::FailAt(const ParseRow& row) {
    if (row.IsLiteral() && row.literal.empty()) {
        (void)ReportEmptyLiteral(schema_, row.number, window_);
    } else if (!IsFailureExpected() && row.reading != Reading::TextToBytes) {
        (void)(row.IsLiteral() ? ReportLiteral(schema_, row.number, window_)
                               : ReportElement(schema_, row.number, window_));
    }
    return nullptr;
}

// A refused STRING or WHITESPACE leaves an empty text behind, any other element the text of before.
void FastParser::ShowToken(const ParseRow& row, const char* start, const Token& token) {
    const char* const text = window_.text.data();
    if (token.accepted) {
        ShowText({row.number, static_cast<int>(token.begin - text), static_cast<int>(token.end - text)});
    } else if (row.kind == kElementString || row.kind == kElementWhiteSpace) {
        ShowText({row.number, static_cast<int>(start - text), static_cast<int>(start - text)});
    }
}

bool FastParser::ParseRemembered(const ParseRow& row) {
    const int start = window_.cursor;
    if (!memo_.Empty()) {
        const TrialMemo::Outcome* known = memo_.Find(row.number, start, window_.end);
        if (known && (!known->matched || shortcutsAllowed_)) {
            const RowText* texts = memo_.TextsOf(*known);
            for (std::uint32_t i = 0; i < known->textCount; ++i)
                ShowText(texts[i]);
            window_.cursor = known->cursor;
            if (known->matched) ++shortcuts_;
            return known->matched;
        }
    }
    const std::size_t stepsBefore = steps_;
    const std::size_t shortcutsBefore = shortcuts_;
    const std::size_t textsBefore = MarkTexts();
    const bool matched = ParseCategory(row);
    // A failure that a shortcut came to would cost more without it.
    const bool leansOnShortcut = !matched && shortcuts_ != shortcutsBefore;
    if (leansOnShortcut || steps_ - stepsBefore >= kWorthRemembering) {
        memo_.Add(row.number, start, window_.end, matched, window_.cursor, textLog_.data() + textsBefore,
                  textLog_.size() - textsBefore);
    }
    return matched;
}

bool FastParser::ParseCategory(const ParseRow& row) {
    switch (row.kind) {
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

// --- categories that match their elements once ---

bool FastParser::ParseSequence(const ParseRow& row) {
    const int start = window_.cursor;
    const bool matched = ParseInside(row);
    CloseText(row, start, window_.cursor, matched);
    return matched;
}

bool FastParser::ParseOption(const ParseRow& row) {
    const int start = window_.cursor;
    SetText(row, start, start);
    if (row.number == 0) schema_.rootSpanEnd = start;
    if (row.insideSilent && row.insideFirst.Excludes(window_)) return true;
    if (!Try(row.Inside(), row.InsideEnd())) {
        window_.cursor = start;
        SetText(row, start, start);
        return true;
    }
    CloseText(row, start, window_.cursor, true);
    return true;
}

bool FastParser::ParseLine(const ParseRow& row) {
    if (!row.keepsWhiteSpace) {
        window_.SkipInvisible();
        if (window_.IsAtEnd()) return true;
    }
    const InputWindow whole = window_;
    const int start = window_.cursor;
    const int lineFeed = window_.Find("\n", start);
    const int lineEnd = lineFeed < 0 ? window_.end : lineFeed;
    window_.begin = start;
    window_.end = start + static_cast<int>(TrimInvisibleEnd(window_.Between(start, lineEnd)).size());
    const bool matched = ParseInside(row);
    window_ = whole;
    window_.cursor = lineFeed < 0 ? window_.end : lineFeed + 1;
    CloseText(row, start, window_.cursor, matched);
    return matched;
}

bool FastParser::ParseNested(const ParseRow& row) {
    const int start = window_.cursor;
    SetText(row, start, start);
    ClearTextsInside(row);
    const ParseRow& beginRow = *row.Inside();
    const ParseRow& endRow = *(row.InsideEnd() - 1);
    const std::string_view begin = BareLiteralText(beginRow.variable->GetText());
    if (!MatchWeak(window_, begin, MatchPlace::Anchored).found) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportLiteral(schema_, beginRow.number, window_);
    }
    const InputWindow behindBegin = window_;
    if (beginRow.Behind() < &endRow && !ParseRange(beginRow.Behind(), &endRow)) {
        return IsFailureExpected() ? false : ReportNestedElements(schema_, row.number, window_);
    }
    const int contentStart = window_.cursor;
    BracketSearch& brackets =
        brackets_.try_emplace(row.number, begin, BareLiteralText(endRow.variable->GetText())).first->second;
    const BracketSearch::Closing closing = brackets.Find(window_);
    window_.cursor = closing.cursor;
    if (!closing.found) {
        if (IsFailureExpected()) return false;
        return ReportNoEndLiteral(schema_, row.number, window_, LineOfCursor(behindBegin));
    }
    CloseText(row, contentStart, closing.start, true);
    return true;
}

// --- taking back, texts ---

bool FastParser::Try(const ParseRow* from, const ParseRow* to) {
    const Mark mark = Now();
    const int start = window_.cursor;
    ++expected_;
    bool matched = ParseRange(from, to);
    const bool outermost = expected_ == 1;
    if (matched && outermost && shortcuts_ != mark.shortcuts) {
        TakeBack(mark);
        window_.cursor = start;
        shortcutsAllowed_ = false;
        matched = ParseRange(from, to);
        shortcutsAllowed_ = true;
    }
    --expected_;
    if (!matched) TakeBack(mark);
    if (outermost) matched ? Commit() : DropTexts();
    return matched;
}

bool FastParser::TryPlain(const ParseRow& row) {
    const std::size_t firstCell = cells_.size();
    ++expected_;
    const bool matched = ParsePlain(row.Inside(), row.InsideEnd()) != nullptr;
    --expected_;
    if (!matched) DropCells(firstCell);
    if (!IsFailureExpected()) DropTexts();
    return matched;
}

void FastParser::TakeBack(const Mark& mark) {
    DropCells(mark.cells);
    shortcuts_ = mark.shortcuts;
    while (added_.size() > mark.records) {
        added_.back()->TakeBackParsedRecord();
        added_.pop_back();
    }
}

void FastParser::Commit() {
    added_.clear();
    DropTexts();
    if (!memo_.Empty()) memo_.Clear();
}

void FastParser::ShowText(const RowText& text) {
    rowTexts_[static_cast<std::size_t>(text.row)] = text;
    if (!IsFailureExpected()) return;
    if (textLog_.size() > textMark_ && textLog_.back().row == text.row) {
        textLog_.back() = text;
    } else {
        textLog_.push_back(text);
    }
}

void FastParser::ClearTextsInside(const ParseRow& row) {
    if (row.insideSilent) return;
    for (const ParseRow* inside = row.Inside(); inside < row.InsideEnd(); ++inside)
        SetText(*inside, 0, 0);
}

void FastParser::CloseText(const ParseRow& row, int begin, int end, bool matched) {
    if (row.number == 0) schema_.rootSpanEnd = window_.cursor - 1;
    if (row.KeepsText()) KeepText(row, begin, end, matched);
}

void FastParser::KeepText(const ParseRow& row, int begin, int end, bool matched) {
    const std::string_view text = TrimInvisible(window_.Between(begin, end));
    const int first = static_cast<int>(text.data() - window_.text.data());
    if (text.empty()) {
        SetText(row, begin, begin);
        return;
    }
    SetText(row, first, first + static_cast<int>(text.size()));
    if (matched && row.column >= 0) cells_.emplace_back(row.column, text);
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
