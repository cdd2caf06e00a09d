#pragma once
// The scanner of main scripts, scripts, patterns and fragments. Outside of commands every byte is text to be written,
// between two dollar signs stand the tokens of a command. Comments are scanned here too and appended to the list of
// commands without the parser.
//
// Whether a source is in text mode, and whether the text delivered last ended a line, is process-wide: a source takes
// over the line start that the last text of the source before it left.

#include <string_view>

#include "frontend/CScan.h"
#include "frontend/CommandList.h"
#include "frontend/POUTX_scan.h"
#include "frontend/ScannerReport.h"

namespace kvl {

class PoutScanX : public POUTX_scan {
public:
    // The longest name, number or run of letters and digits that is still delivered.
    static constexpr std::size_t kLongestToken = 1049215;
    // Lex gives this for a failure that has been reported.
    static constexpr int kFailed = -2;

    // Comments go to `list`, which outlives the scanner.
    PoutScanX(ScannerReport report, CommandList& list);

    // The source is set here before the first token is asked for.
    CScan& Source() { return scan_; }

    // The next token: 0 at the end, a byte for itself, a token of the grammar, or kFailed.
    int Lex();
    // The text of that token, good as long as the source.
    std::string_view TokenText() const { return tokenText_; }

    // Reads what follows $BEGIN COMMENT$ up to the end of that block, and appends it as a text and an end command.
    [[nodiscard]] bool ReadCommentBlock();

    // Appends a command, or literal text, at the line that has been reached.
    void Append(PatternCommand&& command);
    void AppendText(std::string_view text);
    // Keeps the texts of the commands.
    CommandTexts& Texts() { return *list_.texts; }

    int EntityKind() const { return report_.entityKind; }
    bool Report(MessageId id) { return report_.Report(scan_, id); }
    // "Syntax error" or the reason of a fatal error.
    bool Report(std::string_view text) { return report_.Report(scan_, text); }

private:
    int LexText();
    int LexCode();
    int LexTextRun();
    int LexLiteral();
    int LexDollar();
    bool PassMarkerLine(int first);
    bool OpensComment();
    bool ReadDollarComment();

    int GetChar();
    void UngetChar(int character);
    std::string_view Take(std::size_t count);
    int Deliver(int token, std::string_view text);
    int Fail(MessageId id);
    int FailOverflow(std::size_t fetched);

    CScan scan_;
    ScannerReport report_;
    CommandList& list_;  // not owned
    std::string_view tokenText_;
    int lineNumber_ = 1;
    int pendingLines_ = 0;  // line ends within the present token, counted when the next one is asked for
};

}  // namespace kvl
