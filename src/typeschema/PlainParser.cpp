#include "typeschema/PlainParser.h"

#include <algorithm>

#include "messages/Log.h"
#include "text/Trim.h"
#include "typeschema/ElementReaders.h"
#include "typeschema/LiteralText.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

namespace {

std::string HexText(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string hex;
    for (const char c : text) {
        hex += kDigits[static_cast<unsigned char>(c) >> 4];
        hex += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return hex;
}

}  // namespace

PlainParser::PlainParser(CTypeSchema& schema) : schema_(schema), program_(schema), pending_(schema.elements.size()) {
    window_.text = schema.input.GetText();
    window_.end = schema.input.GetLength();
    window_.cursor = schema.input.GetCursor();
    window_.runs = &runs_;
    for (int row = 0; row < program_.Size(); ++row) {
        if (program_[row].list) program_[row].list->KeepInput(schema.input.SharedText());
    }
}

bool PlainParser::Parse() {
    schema_.rootSpanEnd = window_.cursor;
    const bool matched = ParseRange(0, program_.Size(), {true, false});
    schema_.input.SetCursor(window_.cursor);
    return matched;
}

// --- ranges and elements ---

bool PlainParser::ParseRange(int from, int to, Pass pass) {
    ResetRange(from, to);
    if (from >= to) return false;
    for (int row = from; row < to; row = program_.Behind(row)) {
        if (!ParseElement(row, pass) || abandoned_) return false;
    }
    return true;
}

bool PlainParser::ParseElement(int row, Pass pass) {
    Trace(row, pass, "");
    const bool matched = !abandoned_ && ParseKind(row, pass);
    Trace(row, pass, matched ? " ( return TRUE ) " : " ( return FALSE ) ");
    return matched && !abandoned_;
}

bool PlainParser::ParseKind(int row, Pass pass) {
    switch (program_[row].kind) {
        case kElementSequence:
        case kElementRecursion:
            return ParseSequence(row, pass);
        case kElementNested:
            return ParseNested(row, pass);
        case kElementDistance:
        case kElementStream:
            return ParseText(row, pass);
        case kElementChoice:
            return ParseChoice(row, pass);
        case kElementOption:
            return ParseOption(row, pass);
        case kElementLine:
            return ParseLine(row, pass);
        case kElementList:
            return ParseList(row, pass);
        case kElementPermutation:
            return ParsePermutation(row, pass);
        case kElementStrictLiteral:
        case kElementWeakLiteral:
            return ParseLiteral(row);
        default:
            return ParseElementary(row, pass);
    }
}

bool PlainParser::ParseLiteral(int row) {
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

bool PlainParser::ParseElementary(int row, Pass pass) {
    const ParseRow& element = program_[row];
    if (element.kind == kElementString || element.kind == kElementWhiteSpace) SetText(row, {});
    const char* const input = window_.text.data();
    const Token token = ReadElement(runs_, input + window_.cursor, input + window_.end, element.kind);
    window_.cursor = static_cast<int>(token.stop - input);
    if (!token.accepted) return IsFailureExpected() ? false : ReportElement(schema_, row, window_);
    const std::string_view text = token.Text();
    SetText(row, text);
    StoreValue(row, text, pass);
    return true;
}

bool PlainParser::ParseInside(int from, int to, Pass pass) {
    ++expected_;
    const bool matched = ParseRange(from, to, pass);
    --expected_;
    return matched;
}

// --- categories that match their elements once ---

bool PlainParser::ParseSequence(int row, Pass pass) {
    const int start = window_.cursor;
    const bool matched = ParseRange(row + 1, program_[row].end, pass);
    CloseText(row, start, pass);
    return matched;
}

bool PlainParser::ParseOption(int row, Pass pass) {
    const int start = window_.cursor;
    const int end = program_[row].end;
    SetText(row, {});
    if (!ParseInside(row + 1, end, pass.Trial())) {
        window_.cursor = start;
        if (row == 0) schema_.rootSpanEnd = start;
        SetText(row, {});
        ResetRange(row + 1, end);
        return true;
    }
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    const std::string_view text = TrimInvisible(window_.Between(start, window_.cursor));
    SetText(row, text);
    if (pass.store) {
        window_.cursor = start;
        (void)ParseInside(row + 1, end, pass);
        StoreValue(row, text, pass);
    }
    return true;
}

bool PlainParser::ParseLine(int row, Pass pass) {
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
    const bool matched = ParseRange(row + 1, program_[row].end, pass);
    window_ = whole;
    window_.cursor = lineFeed < 0 ? window_.end : lineFeed + 1;
    CloseText(row, start, pass);
    return matched;
}

bool PlainParser::ParseNested(int row, Pass pass) {
    const int start = window_.cursor;
    const int last = program_[row].end - 1;
    SetText(row, {});
    ClearInside(row);
    const std::string_view begin = BareLiteralText(program_[row + 1].variable->GetText());
    const std::string_view end = BareLiteralText(program_[last].variable->GetText());
    if (!MatchWeak(window_, begin, MatchPlace::Anchored).found) {
        window_.cursor = start;
        return IsFailureExpected() ? false : ReportLiteral(schema_, row + 1, window_);
    }
    const InputWindow behindBegin = window_;
    if (row + 2 < last && !ParseRange(row + 2, last, pass)) {
        return IsFailureExpected() ? false : ReportNestedElements(schema_, row, window_);
    }
    const int contentStart = window_.cursor;
    const BracketSearch::Closing closing = brackets_.try_emplace(row, begin, end).first->second.Find(window_);
    window_.cursor = closing.cursor;
    if (!closing.found) {
        return IsFailureExpected() ? false : ReportNoEndLiteral(schema_, row, window_, LineOfCursor(behindBegin));
    }
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    const std::string_view text = TrimInvisible(window_.Between(contentStart, closing.start));
    SetText(row, text);
    StoreValue(row, text, pass);
    return true;
}

// --- values ---

void PlainParser::SetText(int row, std::string_view text) {
    static_cast<CVariableText&>(*program_[row].variable).SetPlace(schema_.input.SharedText(), text);
}

void PlainParser::StoreValue(int row, std::string_view text, Pass pass) {
    if (pass.store && program_[row].column >= 0) pending_[static_cast<std::size_t>(row)] = text;
}

void PlainParser::CloseText(int row, int begin, Pass pass) {
    if (row == 0) schema_.rootSpanEnd = window_.cursor - 1;
    const std::string_view text = TrimInvisible(window_.Between(begin, window_.cursor));
    SetText(row, text);
    StoreValue(row, text, pass);
}

std::vector<int> PlainParser::ChildrenOf(int row) const {
    std::vector<int> children;
    for (int child = row + 1; child < program_[row].end; child = program_.Behind(child))
        children.push_back(child);
    return children;
}

// Literals keep their text, which is part of the grammar.
void PlainParser::ClearInside(int row) {
    for (int inside = row + 1; inside < program_[row].end; ++inside)
        program_[inside].variable->ClearValue();
}

// Records stay: those of an attempt that failed are taken back where it failed.
void PlainParser::ResetRange(int from, int to) {
    for (int row = from; row < to; row = program_.Behind(row)) {
        const ParseRow& element = program_[row];
        if (element.column >= 0) pending_[static_cast<std::size_t>(row)] = {};
        if (element.end != row) ResetRange(row + 1, element.end);
    }
}

void PlainParser::Trace(int row, Pass pass, const char* ending) {
    if (abandoned_) return;
    const ParseRow& element = program_[row];
    const CVariable& variable = *element.variable;
    std::string line(4 * static_cast<std::size_t>(variable.depth), ' ');
    line += std::to_string(window_.cursor - window_.begin) + ", [ " + std::to_string(row);
    if (element.end != row) line += ", " + std::to_string(element.end);
    line += " ] " + variable.typeName + " ";
    if (pass.store) line += " ( store ) ";
    line += ending + variable.label;
    const std::string_view text = variable.GetText();
    if (!text.empty()) {
        line += " = |" + (variable.typeId == kTypeWhiteSpace ? HexText(text) : std::string(text)) + "|";
    }
    Log(line + "\n");
}

void PlainParser::Log(const std::string& text) {
    WriteLog(text);
    abandoned_ = abandoned_ || !LogIsOpen();
}

}  // namespace kvl
