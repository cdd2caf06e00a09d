#include "differential/LiteralParser.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "differential/LiteralTrace.h"
#include "messages/Log.h"
#include "text/ByteClass.h"
#include "typeschema/LiteralText.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

namespace {

struct OverBudget {};

std::string Trimmed(std::string text) {
    while (!text.empty() && IsInvisible(text.back()))
        text.pop_back();
    while (!text.empty() && IsInvisible(text.front()))
        text.erase(0, 1);
    return text;
}

// --- tokens of elementary elements ---

bool IsLetterOfName(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool TokenGoesOn(int kind, char c, int& pointsAllowed) {
    if (kind == kElementWhiteSpace) return IsInvisible(c);
    if (kind == kElementInteger) return IsDigit(c);
    if (kind == kElementFloat) return IsDigit(c) || (c == '.' && pointsAllowed-- > 0);
    if (kind == kElementIdentifier) return IsDigit(c) || IsLetterOfName(c) || c == '_';
    return !IsInvisible(c);
}

bool IsAcceptable(int kind, const std::string& token) {
    int number = 0;
    float real = 0;
    const std::size_t letter = token.find_first_not_of('_');
    if (token.empty()) return false;
    if (kind == kElementBool) return token == "FALSE" || token == "TRUE";
    if (kind == kElementInteger) return std::sscanf(token.c_str(), "%d", &number) == 1;
    if (kind == kElementFloat) return std::sscanf(token.c_str(), "%f", &real) == 1;
    if (kind == kElementIdentifier) return letter == std::string::npos || IsLetterOfName(token[letter]);
    return true;
}

class LiteralParser {
public:
    LiteralParser(const CTypeSchema& schema, std::string_view input, long stepBudget)
        : schema_(schema), input_(input), stepsLeft_(stepBudget) {
        result_.slots.resize(schema.elements.size());
    }

    // A bracket ends behind its closing literal, which is no part of its value; of all other roots the span tells it.
    LiteralParse Parse() {
        result_.matched = ParseRange(0, static_cast<int>(schema_.elements.size()) - 1, {true, false});
        result_.cursor = cursor_;
        if (Variable(0).elementKind == kElementNested) result_.rootEnd = cursor_ - 1;
        return std::move(result_);
    }

private:
    using Slot = LiteralParse::Slot;
    using Path = std::vector<int>;
    struct Pass {
        bool store, provisional;
        Pass Trial() const { return {false, provisional}; }
    };

    // --- rows ---

    Slot& At(int row) { return result_.slots[static_cast<std::size_t>(row)]; }
    const CVariable& Variable(int row) const { return *schema_.elements[static_cast<std::size_t>(row)].variable; }
    bool IsBegin(int row) const { return schema_.elements[static_cast<std::size_t>(row)].mark == kMarkBegin; }
    bool IsEnd(int row) const { return schema_.elements[static_cast<std::size_t>(row)].mark == kMarkEnd; }
    int Last(int row) const { return IsBegin(row) ? Variable(row).lastElement : row; }
    int Behind(int row) const { return Last(row) + 1; }
    bool IsLiteral(int row) const {
        const int kind = Variable(row).elementKind;
        return kind == kElementStrictLiteral || kind == kElementWeakLiteral;
    }

    // --- input ---

    bool IsAtEnd() const { return cursor_ >= static_cast<int>(input_.size()); }
    char Here() const { return input_[static_cast<std::size_t>(cursor_)]; }

    void Step() {
        if (--stepsLeft_ < 0) throw OverBudget();
    }
    bool GetChar(char& c) {
        Step();
        c = IsAtEnd() ? '\0' : Here();
        if (IsAtEnd()) return false;
        ++cursor_;
        return true;
    }
    void SkipInvisible() {
        for (; !IsAtEnd() && IsInvisible(Here()); ++cursor_)
            Step();
    }
    std::string Between(int first, int behind) const {
        if (first >= behind) return {};
        return input_.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(behind - first));
    }

    // --- frame ---

    bool ParseRange(int first, int last, Pass pass) {
        ResetRange(first, last);
        bool result = false;
        for (int row = first; row <= last; row = Behind(row)) {
            Step();
            Trace(row, pass, "");
            result = ParseElement(row, Last(row), pass);
            Trace(row, pass, result ? " ( return TRUE ) " : " ( return FALSE ) ");
            if (!result) return false;
        }
        return result;
    }

    // The rows of a category, which is an enclosing one meanwhile.
    bool ParseInside(int category, int first, int last, Pass pass) {
        enclosing_.push_back(Variable(category).elementKind);
        const bool ok = ParseRange(first, last, pass);
        enclosing_.pop_back();
        return ok;
    }

    bool ParseElement(int first, int last, Pass pass) {
        const int kind = Variable(first).elementKind;
        if (kind == kElementSequence) return ParseSequence(first, last, pass);
        if (kind == kElementNested) return ParseNested(first, last, pass);
        if (kind == kElementDistance || kind == kElementStream) return ParseTerminated(first, last, pass);
        if (kind == kElementChoice) return ParseChoice(first, pass);
        if (kind == kElementOption) return ParseOption(first, last, pass);
        if (kind == kElementLine) return ParseLine(first, last, pass);
        if (kind == kElementList) return ParseList(first, last, pass);
        if (kind == kElementPermutation) return ParsePermutation(first, pass);
        return IsLiteral(first) ? ParseLiteral(first) : ParseElementary(first, pass);
    }

    // Records are not touched here: those of an attempt that failed are taken back where it failed.
    void ResetRange(int first, int last) {
        for (int row = first; row <= last; row = Behind(row)) {
            Step();
            if (IsLiteral(row)) continue;
            if (Variable(row).ownerList != nullptr) At(row).pendingCell.clear();
            if (!IsBegin(row)) continue;
            SetEnd(row, cursor_);
            ResetRange(row + 1, Last(row) - 1);
        }
    }

    bool IsFailureExpected() const {
        return std::any_of(enclosing_.begin(), enclosing_.end(), [](int kind) {
            return kind == kElementOption || kind == kElementChoice || kind == kElementList ||
                   kind == kElementPermutation || kind == kElementDistance || kind == kElementStream;
        });
    }

    // The message is raised here and now, so that the log has it in its place.
    template <class... Line>
    bool Fail(bool (*report)(const CTypeSchema&, int, const InputWindow&, Line...), int row, Line... lineOfBegin) {
        return IsFailureExpected() ? false : report(schema_, row, WindowAt(cursor_), lineOfBegin...);
    }

    InputWindow WindowAt(int cursor) const { return {input_, 0, static_cast<int>(input_.size()), cursor}; }

    // Of the root alone the end of the span counts.
    void SetEnd(int row, int end) {
        if (row == 0) result_.rootEnd = end;
    }

    void Keep(int row, const std::string& text, Pass pass) {
        At(row).text = text;
        const bool isCell = !Variable(row).label.empty() && Variable(row).ownerList != nullptr;
        if (pass.store && isCell) At(row).pendingCell = text;
    }

    // The text from where the category began to the cursor, without invisible characters at both ends.
    void CloseSpan(int row, int start, Pass pass) {
        SetEnd(row, cursor_ - 1);
        Keep(row, Trimmed(Between(start, cursor_)), pass);
    }

    // The direct elements of a category. Every element of it, however deep, loses its value on the way.
    std::vector<int> CollectChildren(int category) {
        const int last = Last(category) - 1;
        for (int row = category + 1; row <= last; ++row)
            At(row).text.clear();
        std::vector<int> children;
        for (int row = category + 1; row <= last; row = Behind(row))
            children.push_back(row);
        return children;
    }

    void Trace(int row, Pass pass, const std::string& ending) {
        const std::string text = IsLiteral(row) ? std::string(Variable(row).GetText()) : At(row).text;
        LogElement(Variable(row), row, Last(row), cursor_, (pass.store ? " ( store ) " : "") + ending, text);
    }

    // --- literals ---

    bool ParseLiteral(int row) {
        const int p = cursor_;
        const std::string_view declared = Variable(row).GetText();
        int start = -1, end = -1;
        const bool isStrict = Variable(row).elementKind == kElementStrictLiteral;
        const bool ok = isStrict ? MatchStrict(StrictLiteralText(declared))
                                 : MatchWeak(WeakLiteralText(declared), start, end, true);
        return ok || LiteralFailed(row, p);
    }

    bool LiteralFailed(int row, int cursor) {
        cursor_ = cursor;
        return Fail(ReportLiteral, row);
    }

    bool MatchStrict(const std::string& literal) {
        std::string read;
        for (char c = '\0'; read.size() < literal.size(); read += c)
            if (!GetChar(c)) return false;
        return read == literal;
    }

    bool MatchWeak(const std::string& literal, int& start, int& end, bool anchored) {
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
            if (p >= static_cast<int>(input_.size())) eof = true;
        }
        return matched;
    }

    bool MatchVisibleRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof) {
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

    bool MatchWhiteRun(const std::string& literal, std::size_t& j, bool& matched, bool& eof) {
        while (!matched && IsInvisible(literal[j])) {
            ++j;
            if (j == literal.size()) matched = true;
        }
        const int from = cursor_;
        SkipInvisible();
        if (IsAtEnd()) eof = true;
        return cursor_ > from;
    }

    // --- elementary elements ---

    bool ParseElementary(int row, Pass pass) {
        const int kind = Variable(row).elementKind;
        if (kind == kElementString || kind == kElementWhiteSpace) At(row).text.clear();
        std::string token;
        const bool stopped = ReadToken(kind, token);
        if (!IsAcceptable(kind, token)) return Fail(ReportElement, row);
        Keep(row, token, pass);
        if (stopped) --cursor_;
        return true;
    }

    // True if a character behind the token has been read, too.
    bool ReadToken(int kind, std::string& token) {
        char c = '\0';
        bool got = GetChar(c);
        if (kind != kElementWhiteSpace) {
            while (got && IsInvisible(c))
                got = GetChar(c);
            if (!got) return false;
            token += c;
            const bool isNumber = kind == kElementInteger || kind == kElementFloat;
            if (isNumber && !IsDigit(c) && c != '+' && c != '-') return false;
            got = GetChar(c);
        }
        int pointsAllowed = 1;
        for (; got; got = GetChar(c)) {
            if (!TokenGoesOn(kind, c, pointsAllowed)) return true;
            token += c;
        }
        return false;
    }

    // --- categories that match once, in order ---

    bool ParseSequence(int first, int last, Pass pass) {
        const int p = cursor_;
        const bool ok = ParseInside(first, first + 1, last - 1, pass);
        CloseSpan(first, p, pass);
        return ok;
    }

    bool ParseOption(int first, int last, Pass pass) {
        const int p = cursor_;
        At(first).text.clear();
        if (!ParseInside(first, first + 1, last - 1, pass.Trial())) {
            cursor_ = p;
            At(first).text.clear();
            ResetRange(first + 1, last - 1);
            return true;
        }
        CloseSpan(first, p, pass.Trial());
        if (!pass.store) return true;
        cursor_ = p;
        static_cast<void>(ParseInside(first, first + 1, last - 1, pass));
        Keep(first, At(first).text, pass);
        return true;
    }

    bool ParseLine(int first, int last, Pass pass) {
        if (PassesOverWhiteSpace(first, last)) {
            SkipInvisible();
            if (IsAtEnd()) return true;
        }
        const int p = cursor_;
        std::string line;
        for (char c = '\0'; GetChar(c) && c != '\n';)
            line += c;
        const int next = cursor_;
        while (!line.empty() && IsInvisible(line.back()))
            line.pop_back();

        const std::string whole = std::exchange(input_, line);
        cursor_ = 0;
        const bool ok = ParseInside(first, first + 1, last - 1, pass);
        input_ = whole;
        cursor_ = next;
        CloseSpan(first, p, pass);
        return ok;
    }

    // Unless the first elementary element anywhere inside reads white space itself.
    bool PassesOverWhiteSpace(int first, int last) const {
        for (int row = first; row <= last; ++row) {
            const int typeId = Variable(row).typeId;
            const bool isElementary =
                (typeId >= kTypeString && typeId <= kTypeWhiteSpace) || typeId == kDeclaredTypeName;
            if (!IsEnd(row) && isElementary) return typeId != kTypeWhiteSpace;
        }
        return true;
    }

    bool ParseNested(int first, int last, Pass pass) {
        const int p = cursor_;
        At(first).text.clear();
        static_cast<void>(CollectChildren(first));
        const std::string begin(BareLiteralText(Variable(first + 1).GetText()));
        const std::string end(BareLiteralText(Variable(last - 1).GetText()));

        int start = -1, behind = -1;
        if (!MatchWeak(begin, start, behind, true)) return LiteralFailed(first + 1, p);
        const int lineOfBegin = LineOfCursor(WindowAt(cursor_));
        if (first + 2 <= last - 2 && !ParseInside(first, first + 2, last - 2, pass))
            return Fail(ReportNestedElements, first);

        const int contentStart = cursor_;
        for (int depth = 1; depth > 0;) {
            bool isBegin = false;
            if (!FindNextBracket(begin, end, isBegin, start)) return Fail(ReportNoEndLiteral, first, lineOfBegin);
            depth += isBegin ? 1 : -1;
        }
        Keep(first, Trimmed(Between(contentStart, start)), pass);
        return true;
    }

    // The cursor then stands behind the literal chosen; `start` is where that begins.
    bool FindNextBracket(const std::string& begin, const std::string& end, bool& isBegin, int& start) {
        const int c = cursor_;
        int s1 = -1, e1 = -1, s2 = -1, e2 = -1;
        // Of blanks alone a begin literal is found in nothing, too: that would open brackets for ever.
        const bool foundBegin = MatchWeak(begin, s1, e1, false) && e1 > c;
        cursor_ = c;
        const bool foundEnd = MatchWeak(end, s2, e2, false);
        if (!foundBegin && !foundEnd) return false;
        isBegin = foundBegin;
        if (foundBegin && foundEnd) isBegin = s1 == s2 ? e1 < e2 : s1 < s2;
        start = isBegin ? s1 : s2;
        cursor_ = isBegin ? e1 : e2;
        return true;
    }

    // --- categories that search ---

    bool ParseChoice(int first, Pass pass) {
        const int p = cursor_;
        int chosen = -1;
        for (const int child : CollectChildren(first)) {
            const bool ok = ParseInside(first, child, Last(child), pass.Trial());
            CloseSpan(first, p, pass.Trial());
            LogVerdict("CHOICE", Variable(child), ok);
            cursor_ = p;
            if (!ok) continue;
            chosen = child;
            break;
        }
        if (chosen < 0) return Fail(ReportNoAlternative, first);
        const bool ok = ParseInside(first, chosen, Last(chosen), pass);
        CloseSpan(first, p, pass);
        return ok;
    }

    bool ParsePermutation(int first, Pass pass) {
        const int p = cursor_;
        std::vector<int> order = CollectChildren(first);
        if (order.empty()) return true;
        // The rows ascend, so that the orders of rows are those of the elements.
        bool isValid = false;
        do {
            At(first).text.clear();
            cursor_ = p;
            isValid = std::all_of(order.begin(), order.end(), [&](int child) {
                const bool ok = ParseInside(first, child, Last(child), pass.Trial());
                LogVerdict("PERMUTATION", Variable(child), ok);
                return ok;
            });
        } while (!isValid && std::next_permutation(order.begin(), order.end()));
        cursor_ = p;
        if (!isValid) return Fail(ReportNoPermutation, first);

        std::string labels;
        for (const int child : order)
            labels += Variable(child).GetRangeLabel() + " ";
        WriteLog("\r\nVALID PERMUTATION is: \r\n" + labels + "\n\r\n");
        bool ok = false;
        for (const int child : order)
            ok = ParseInside(first, child, Last(child), pass);
        SetEnd(first, cursor_ - 1);
        Keep(first, "", pass);
        return ok;
    }

    bool ParseList(int first, int last, Pass pass) {
        bool any = false;
        for (bool ok = true; ok;) {
            ClearPendingCells(first);
            if (IsAtEnd()) break;
            const int start = cursor_;
            ok = ParseInside(first, first + 1, last - 1, pass.Trial()) && cursor_ != start;
            any = any || ok;
            if (!ok) cursor_ = start;
            if (!ok || !pass.store) continue;
            cursor_ = start;
            ClearPendingCells(first);
            ok = ParseInside(first, first + 1, last - 1, pass);
            AddRecord(first, pass.provisional);
        }
        ClearPendingCells(first);
        WriteLog("list " + Variable(first).label + (any ? " is not empty" : " is empty"));
        if (!any) return Fail(ReportEmptyList, first);
        SetEnd(first, cursor_);
        return true;
    }

    bool ParseTerminated(int first, int last, Pass pass) {
        const int p = cursor_;
        std::string text;
        bool ok = true;
        if (first + 1 == last) {
            int end = static_cast<int>(input_.size());
            while (end > p && IsInvisible(input_[static_cast<std::size_t>(end - 1)]))
                --end;
            text = Between(p, end);
            cursor_ = std::max(p, end);
        } else {
            ok = Scan(first, last, pass.Trial(), text);
            if (ok && pass.store) {
                cursor_ = p;
                ok = Scan(first, last, pass, text);
            }
        }
        text = Trimmed(text);
        if (!ok) {
            cursor_ = p;
            return Fail(ReportNoTerminator, first);
        }
        if (Variable(first).elementKind == kElementDistance && text.empty()) {
            cursor_ = p;
            WriteLog("\r\nDISTANCE Is Zero. \r\n");
            return Fail(ReportEmptyDistance, first);
        }
        WriteLog("\r\n " + Variable(first).GetRangeLabel() + "::" + Variable(first).typeName + " = " + text + "\r\n");
        SetEnd(first, cursor_ - 1);
        Keep(first, text, pass);
        return true;
    }

    bool Scan(int first, int last, Pass pass, std::string& text) {
        for (text.clear(); !IsAtEnd(); text += input_[static_cast<std::size_t>(cursor_++)]) {
            const int here = cursor_;
            const std::size_t recordsBefore = added_.size();
            LogIteration(Variable(first));
            if (ParseInside(first, first + 1, last - 1, pass)) return true;
            pass.provisional = true;
            At(first).text.clear();
            ResetRange(first + 1, last - 1);
            TakeBackRecords(first, last, recordsBefore);
            // An attempt that ran to the end of the input ends the search.
            if (IsAtEnd()) return false;
            cursor_ = here;
        }
        return false;
    }

    // --- records ---

    void ClearPendingCells(int listRow) {
        for (int row = listRow + 1; row < Last(listRow); ++row)
            At(row).pendingCell.clear();
    }

    // A nested list adds its records before the record above them: the count of records of a list above is the number
    // that its record under construction will get.
    void AddRecord(int listRow, bool provisional) {
        Path path;
        for (const auto* list = static_cast<const CVariableKVLCategoryList*>(&Variable(listRow)); list != nullptr;
             list = list->parentList)
            path.insert(path.begin(), static_cast<int>(At(list->firstElement).records.size()));

        LiteralParse::Record record{{}, provisional};
        std::map<std::string, std::string> shown;
        for (int row = listRow + 1; row < Last(listRow); ++row) {
            if (IsEnd(row) || Variable(row).ownerList != &Variable(listRow)) continue;
            const std::string cell = Variable(row).IsList() ? "$?$" : At(row).pendingCell;
            record.cells[Variable(row).label] = cell;
            shown[Variable(row).label] = cell.empty() ? "" : ShownText(Variable(row), cell) + "\n";
        }
        std::string cells;
        for (const auto& [label, cell] : shown)
            cells += label + "\n" + cell;
        LogRecord("Add Record ", path, provisional, " To ", Variable(listRow), cells);
        At(listRow).records.insert({path, record});
        added_.emplace_back(listRow, path);
        ClearPendingCells(listRow);
        if (!provisional) ConfirmRecord(listRow, path);
    }

    // With all records nested in it.
    void ConfirmRecord(int listRow, const Path& path) {
        for (int row = listRow; row < Last(listRow); ++row)
            for (auto& [key, record] : At(row).records)
                if (std::equal(path.begin(), path.end(), key.begin())) record.provisional = false;
    }

    // Down to as many as had been added then: list after list, the nested ones first. Records of one parent go
    // together, and the log names the first of them.
    void TakeBackRecords(int first, int last, std::size_t count) {
        for (int end = first; end <= last; ++end) {
            if (!IsEnd(end) || !Variable(end).IsList()) continue;
            const int listRow = Variable(end).firstElement;
            Path parentBefore;
            for (std::size_t i = count; i < added_.size(); ++i) {
                if (added_[i].first != listRow) continue;
                const Path& path = added_[i].second;
                const Path parent(path.begin(), path.end() - 1);
                if (parent.empty() || parent != parentBefore)
                    LogRecord("Remove Record ", path, At(listRow).records[path].provisional, " From ",
                              Variable(listRow), "");
                parentBefore = parent;
                At(listRow).records.erase(path);
            }
        }
        added_.resize(count);
    }

    const CTypeSchema& schema_;
    std::string input_;
    int cursor_ = 0;
    LiteralParse result_;
    std::vector<int> enclosing_;               // the kinds of the categories around the current row, innermost last
    std::vector<std::pair<int, Path>> added_;  // row of the list and path of each record, in order
    long stepsLeft_;
};

}  // namespace

bool LiteralParse::HasRemainder(std::string_view input) const {
    if (rootEnd + 1 >= static_cast<int>(input.size()) - 1 || rootEnd == -1) return false;
    const std::string_view rest = input.substr(static_cast<std::size_t>(rootEnd + 1));
    return !std::all_of(rest.begin(), rest.end(), [](char c) { return IsInvisible(c); });
}

std::optional<LiteralParse> ParseLiterally(const CTypeSchema& schema, std::string_view input, long stepBudget) {
    try {
        return LiteralParser(schema, input, stepBudget).Parse();
    } catch (const OverBudget&) {
        return std::nullopt;
    }
}

}  // namespace kvl
