#pragma once
// The scanner of type files: one stream of tokens from the first byte to the last. Literals and comments are read here
// past the automaton, so that they may be of any length and cross lines.

#include <string_view>

#include "frontend/CScan.h"
#include "frontend/PINX_scan.h"
#include "frontend/ScannerReport.h"

namespace kvl {

class PinScanX : public PINX_scan {
public:
    explicit PinScanX(ScannerReport report);

    // The source is set here before the first token is asked for.
    CScan& Source() { return scan_; }

    // The next token: 0 at the end, a byte for itself, a token of the grammar, or kFailed.
    int Lex();
    // The text of that token, a literal with its quotes and doubling. A view into the source, good as long as the
    // scanner.
    std::string_view TokenText() const { return tokenText_; }

    // The line of the end of that token.
    int LineNumber() const { return lineNumber_; }
    // Bytes asked for so far, the ones behind the token that were needed to see its end included.
    int CharacterCount() const { return scan_.GetCharacterCount(); }

    bool Report(MessageId id) { return report_.Report(scan_, id); }
    // "Syntax error" or the reason of a fatal error.
    bool Report(std::string_view text) { return report_.Report(scan_, text); }
    // A fault of a source line as a whole.
    bool ReportLine(MessageId id, int lineNumber) const;

private:
    int LexLiteral(std::string_view opening);
    bool PassBlockComment();
    bool OpensComment();
    bool PassDollarComment();

    bool PassByte(char expected);
    std::string_view TakeMatch(const Match& match);
    std::string_view Take(std::size_t count);
    int Deliver(int token, std::string_view text);
    int FailOverflow();

    CScan scan_;
    ScannerReport report_;
    std::string_view tokenText_;
    int lineNumber_ = 1;
};

}  // namespace kvl
