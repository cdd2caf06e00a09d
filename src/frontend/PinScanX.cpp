#include "frontend/PinScanX.h"

#include <algorithm>
#include <utility>

#include "TypeGrammar.h"
#include "messages/CMessage.h"
#include "text/ByteClass.h"
#include "text/Paths.h"

namespace kvl {

namespace {

struct LiteralRow {
    char quote;
    int token;
    MessageId unclosed;
};

constexpr LiteralRow kStrict = {'"', PINX_STRICT_LITERAL, ERR_DECL_TYPE_LIT_2};
constexpr LiteralRow kWeak = {'\'', PINX_WEAK_LITERAL, ERR_DECL_TYPE_LIT_1};

}  // namespace

PinScanX::PinScanX(ScannerReport report) : report_(std::move(report)) {}

int PinScanX::Lex() {
    while (!scan_.Rest().empty()) {
        const Match match = MatchFront(scan_.Rest());
        if (match.outcome != kSkipped && match.length > kLongestToken) return FailOverflow();
        const std::string_view text = TakeMatch(match);
        switch (match.outcome) {
            case kSkipped:
                break;
            case kDollar:
                if (!OpensComment()) return Deliver('$', text);
                if (!PassDollarComment()) return kFailed;
                break;
            case kBlockComment:
                if (!PassBlockComment()) return kFailed;
                break;
            case kQuote:
                return LexLiteral(text);
            default:
                return Deliver(match.outcome, text);
        }
    }
    scan_.GetChar();
    return Deliver(0, {});
}

// Two quotes stand for one, so that only a quote without a partner ends the literal. The byte behind it is fetched to
// know.
int PinScanX::LexLiteral(std::string_view opening) {
    const LiteralRow& row = opening.front() == kStrict.quote ? kStrict : kWeak;
    scan_.SetMark(true);
    do {
        const std::size_t next = scan_.Rest().find(row.quote);
        if (next == std::string_view::npos) {
            Take(scan_.Rest().size());
            Report(row.unclosed);
            return kFailed;
        }
        Take(next + 1);
    } while (PassByte(row.quote));
    scan_.SetMark(false);
    return Deliver(row.token, {opening.data(), static_cast<std::size_t>(scan_.Rest().data() - opening.data())});
}

bool PinScanX::PassBlockComment() {
    scan_.SetMark(true);
    const std::size_t end = scan_.Rest().find("*/");
    if (end == std::string_view::npos) {
        Take(scan_.Rest().size());
        return Report(ERR_DECL_TYPE_COMM_1);
    }
    Take(end + 2);
    scan_.SetMark(false);
    return true;
}

// Nothing is taken where no comment begins.
bool PinScanX::OpensComment() {
    if (!PassByte('/')) return false;
    if (PassByte('*')) return true;
    scan_.UngetChars(1);
    return false;
}

// Invisible bytes may stand between the three that end the comment.
bool PinScanX::PassDollarComment() {
    constexpr std::string_view kEnd = "*/$";
    const std::string_view rest = scan_.Rest();
    std::size_t count = 0;
    std::size_t seen = 0;  // of kEnd
    while (count < rest.size() && seen < kEnd.size()) {
        const char c = rest[count++];
        if (IsInvisible(c)) continue;
        seen = c == kEnd[seen] ? seen + 1 : c == kEnd[0] ? 1 : 0;
    }
    Take(count);
    return seen == kEnd.size() || Report(ERR_DECL_PATTERN_COMM_1);
}

// The next byte if it is `expected`. It is fetched in any case.
bool PinScanX::PassByte(char expected) {
    const int next = scan_.GetChar();
    if (next == static_cast<unsigned char>(expected)) return true;
    if (next != -1) scan_.UngetChars(1);
    return false;
}

std::string_view PinScanX::TakeMatch(const Match& match) {
    const std::string_view text = Take(match.length);
    const std::size_t wanted = match.fetched - match.length;
    const std::size_t given = scan_.Take(wanted).size();
    if (given < wanted) scan_.GetChar();  // asked for once more at the end of the source
    scan_.UngetChars(static_cast<int>(given));
    return text;
}

std::string_view PinScanX::Take(std::size_t count) {
    const std::string_view text = scan_.Take(count);
    lineNumber_ += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    return text;
}

int PinScanX::Deliver(int token, std::string_view text) {
    tokenText_ = text;
    return token;
}

int PinScanX::FailOverflow() {
    scan_.Take(kLongestToken + 1);
    Report("Token buffer overflow");
    return kFailed;
}

bool PinScanX::ReportLine(MessageId id, int lineNumber) const {
    SourceContext record;
    record.entityKind = report_.entityKind;
    record.entityName =
        report_.displayName.empty() ? report_.displayText : PathPart(report_.displayName, PathMode::Display);
    record.lineNumber = lineNumber;
    if (!scan_.GetLineText(lineNumber, record.lineText)) record.lineText.clear();
    return kvl::Report(id, record);
}

}  // namespace kvl
