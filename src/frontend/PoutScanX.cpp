#include "frontend/PoutScanX.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "ScriptGrammar.h"
#include "text/ByteClass.h"
#include "text/ProcessState.h"

namespace kvl {

namespace {

constexpr char kDollar = '$';

// Carriage returns and other control bytes, and all bytes above 0x7E but the special letters, are no text.
constexpr bool IsDropped(char c) {
    return IsInvisible(c) && c != ' ' && c != '\t' && c != '\n';
}

constexpr std::array<bool, 256> MakeTextTable() {
    std::array<bool, 256> table{};
    for (unsigned i = 0; i < 256; ++i)
        table[i] = i != '$' && !IsDropped(static_cast<char>(static_cast<unsigned char>(i)));
    return table;
}
constexpr std::array<bool, 256> kIsText = MakeTextTable();

bool IsText(char c) {
    return kIsText[static_cast<unsigned char>(c)];
}

// Where a run of letters and digits in `text` has grown one byte too long; npos if none has.
std::size_t FindOverlongRun(std::string_view text) {
    std::size_t run = 0;
    for (std::size_t index = 0; index < text.size(); ++index) {
        run = IsNameByte(text[index]) ? run + 1 : 0;
        if (run > PoutScanX::kLongestToken) return index;
    }
    return std::string_view::npos;
}

// Bytes up to the end of the first place where the visible bytes read last spell `mark`; npos if there is none.
std::size_t FindEndMark(std::string_view text, std::string_view mark) {
    std::string lastVisible;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (IsInvisible(text[index])) continue;
        if (lastVisible.size() == mark.size()) lastVisible.erase(0, 1);
        lastVisible += text[index];
        if (lastVisible == mark) return index + 1;
    }
    return std::string_view::npos;
}

PatternCommand CommentEndCommand() {
    PatternCommand command;
    command.beginEnd = cmd_end;
    command.kind = cmd_kind_begin_end_verb_stream;
    command.subkind = cmd_comment;
    command.commandText = "COMMENT";
    command.endText = "END";
    return command;
}

PatternCommand DollarCommentCommand(std::string_view text) {
    PatternCommand command;
    command.kind = cmd_kind_new_comment;
    command.subkind = kNewCommentSubkind;
    command.commandText = "NEWCOMMENT";
    command.streamText = "$/*";
    command.streamText += text;
    return command;
}

}  // namespace

PoutScanX::PoutScanX(ScannerReport report, CommandList& list) : report_(std::move(report)), list_(list) {
    Process().textMode = true;
}

int PoutScanX::Lex() {
    lineNumber_ += std::exchange(pendingLines_, 0);
    return Process().textMode ? LexText() : LexCode();
}

int PoutScanX::LexText() {
    for (;;) {
        const std::string_view rest = scan_.Rest();
        if (rest.empty()) {
            scan_.GetChar();
            return Deliver(0, "");
        }
        if (rest.front() == kDollar) {
            const int outcome = LexDollar();
            if (outcome != kSkipped) return outcome;
            continue;
        }
        if (IsText(rest.front())) return LexTextRun();
        scan_.Take(CountFront(rest, IsDropped));
    }
}

// Text goes to the parser in pieces as large as possible: up to the next dollar or dropped byte.
int PoutScanX::LexTextRun() {
    const std::string_view rest = scan_.Rest();
    const std::string_view text = rest.substr(0, CountFront(rest, IsText));
    const std::size_t overlong = text.size() > kLongestToken ? FindOverlongRun(text) : std::string_view::npos;
    if (overlong != std::string_view::npos) return FailOverflow(overlong + 1);
    Process().atLineStart = text.back() == '\n';
    pendingLines_ = static_cast<int>(std::ranges::count(text, '\n'));
    return Deliver(SCRIPT_TEXT, scan_.Take(text.size()));
}

int PoutScanX::LexDollar() {
    scan_.Take(1);
    const int next = GetChar();
    if (next == -1) return kSkipped;
    if (next == kDollar) {
        Process().atLineStart = false;
        return Deliver(SCRIPT_TEXT, "$");
    }
    if (IsInvisible(static_cast<char>(next))) return PassMarkerLine(next) ? kSkipped : kFailed;
    UngetChar(next);
    if (OpensComment()) return ReadDollarComment() ? kSkipped : kFailed;
    Process().textMode = false;
    Process().atLineStart = false;
    return Deliver(kDollar, "$");
}

// A line of a dollar in its first column and nothing visible behind it vanishes together with its line end. `first` is
// the byte behind the dollar.
bool PoutScanX::PassMarkerLine(int first) {
    if (!Process().atLineStart) return Report(ERR_DECL_PATTERN_SYNTAX_1);
    int next = first;
    while (next != '\n' && next != -1) {
        next = GetChar();
        if (next != -1 && !IsInvisible(static_cast<char>(next))) return Report(ERR_DECL_PATTERN_SYNTAX_1);
    }
    if (next == -1) Process().atLineStart = false;
    return true;
}

// Is "/*" next? It is passed over then, else nothing is.
bool PoutScanX::OpensComment() {
    const int slash = GetChar();
    if (slash != '/') {
        UngetChar(slash);
        return false;
    }
    const int star = GetChar();
    if (star == '*') return true;
    UngetChar(star);
    UngetChar(slash);
    return false;
}

bool PoutScanX::ReadDollarComment() {
    const std::size_t length = FindEndMark(scan_.Rest(), "*/$");
    const std::string_view text = Take(length);
    if (length == std::string_view::npos) return Report(ERR_DECL_PATTERN_COMM_1);
    Append(DollarCommentCommand(text));
    return true;
}

bool PoutScanX::ReadCommentBlock() {
    scan_.SetMark(true);
    const std::size_t length = FindEndMark(scan_.Rest(), "$ENDCOMMENT$");
    const std::string_view text = Take(length);
    if (length == std::string_view::npos) return Report(TwinFor(ERR_DECL_SCRIPT_COMM_1, EntityKind()));
    scan_.SetMark(false);
    AppendText(text.substr(0, text.rfind("$END")));
    Append(CommentEndCommand());
    return true;
}

int PoutScanX::LexCode() {
    for (;;) {
        const std::string_view rest = scan_.Rest();
        if (rest.empty()) {
            scan_.GetChar();
            return Deliver(0, "");
        }
        const CodeMatch match = MatchCode(rest);
        if (match.outcome == kQuote) return LexLiteral();
        if (match.length > kLongestToken) return FailOverflow(kLongestToken + 1);
        const std::string_view looked = scan_.Take(match.fetched);
        scan_.UngetChars(static_cast<int>(looked.size() - match.length));
        if (match.outcome == kLineEnd) return Fail(ERR_DECL_PATTERN_SYNTAX_1);
        if (match.outcome == kSkipped) continue;
        if (match.outcome == kDollar) {
            Process().textMode = true;
            Process().atLineStart = false;
        }
        return Deliver(match.outcome, looked.substr(0, match.length));
    }
}

// A literal ends on its line. Its quotes stay, and a doubled quote within stays doubled. Its failure is told at its
// start.
int PoutScanX::LexLiteral() {
    const std::string_view rest = scan_.Rest();
    scan_.Take(1);
    scan_.SetMark(true);
    std::size_t length = 1;
    for (;;) {
        length += CountFront(rest.substr(length), [](char c) { return c != '"' && c != '\n'; });
        if (length == rest.size() || rest[length] == '\n') return Fail(ERR_DECL_TYPE_LIT_2);
        ++length;
        if (length == rest.size() || rest[length] != '"') break;
        ++length;
    }
    scan_.Take(length - 1);
    UngetChar(GetChar());
    scan_.SetMark(false);
    return Deliver(SCRIPT_LITERAL, rest.substr(0, length));
}

void PoutScanX::Append(PatternCommand&& command) {
    list_.AppendCommand(std::move(command), lineNumber_, scan_.IsUtf8Source());
}

void PoutScanX::AppendText(std::string_view text) {
    PatternCommand command;
    command.kind = cmd_kind_stream;
    command.subkind = cmd_stream;
    command.commandText = "STREAM";
    command.streamText = text;
    Append(std::move(command));
}

int PoutScanX::GetChar() {
    const int character = scan_.GetChar();
    if (character == '\n') ++lineNumber_;
    return character;
}

// The end of the source cannot be given back, and need not be.
void PoutScanX::UngetChar(int character) {
    if (character == '\n') --lineNumber_;
    if (character != -1) scan_.UngetChars(1);
}

std::string_view PoutScanX::Take(std::size_t count) {
    const std::string_view taken = scan_.Take(count);
    lineNumber_ += static_cast<int>(std::ranges::count(taken, '\n'));
    return taken;
}

int PoutScanX::Deliver(int token, std::string_view text) {
    tokenText_ = text;
    return token;
}

// `fetched` bytes of the rest, the last of which is one too many.
int PoutScanX::FailOverflow(std::size_t fetched) {
    scan_.Take(fetched);
    Report("Token buffer overflow");
    return kFailed;
}

int PoutScanX::Fail(MessageId id) {
    Report(id);
    return kFailed;
}

}  // namespace kvl
