#pragma once
// What a compiled source has in common, be it a script, a pattern or a type: where the text came from, what kind of
// thing it is, the present line, and how a place in it is shown.

#include <memory>
#include <string>
#include <string_view>

#include "messages/CMessage.h"
#include "typeschema/CTSString.h"
#include "values/CVariable.h"

namespace kvl {

// Where a compiled text came from, and the names under which it is known.
struct EntityNames {
    std::string scriptMacroShortName, patternMacroShortName;  // the part behind the last ":"
    std::string scriptMacroName, patternMacroName;
    std::string sourcePath;       // empty for a stream
    std::string sourceFile;       // file name with extension
    std::string sourceStream;     // name of the stream; empty for a file
    std::string sourceDirectory;  // with "/" as separator; the stream's name when there is no file
    std::string name;             // full name of the script, pattern or type
};

class CTSEntity : public VariableOwner {
public:
    std::shared_ptr<EntityNames> names = std::make_shared<EntityNames>();  // shared by all clones of a macro
    int entityKind = kEntityUnknown;
    int currentLine = -1;  // of the command being executed

    bool IsScript() const { return IsScriptKind(entityKind); }
    // The twin of a script message that fits this entity.
    MessageId Twin(MessageId scriptRow) const { return TwinFor(scriptRow, entityKind); }

    // File name, else the display name, absolute paths cut to their file name.
    std::string SourceName() const override;
    int CurrentLine() const override { return currentLine; }

    // The path in display form, or the stream's name.
    std::string GetDisplayPath() const;
    // Text of a line of the source; empty when there is no file or no line.
    std::string GetSourceLine(int line) const;

    // Place of the present command (or of `line`) for messages.
    virtual MessageContext GetMessageContext() const;
    MessageContext GetMessageContext(int line) const;
    virtual void ReportDivisionByZero() const {}

    // Sets path, file and directory (for a file), or the stream name.
    void SetSourceFile(std::string_view path);
    void SetSourceStream(std::string_view streamName);
};

// A place in a text as messages show it. Line and column count from 1.
struct TextPlace {
    int line = 0;
    int column = 0;
    std::string text;
    std::string mark = "^";
};
// Where the cursor stands; at or behind the end: on the last byte.
TextPlace LocateCursor(const CTSString& input);
TextPlace LocateCursor(std::string_view text, int cursor);
// The place of the last occurrence of `token` in the text up to and including `offset`, else of `offset` itself. As the
// scanners count, `offset` is one in the folded text and `token` is folded; the place is shown in the text as it is.
TextPlace LocateToken(std::string_view text, int offset, std::string_view token);
// The same in the file at `sourcePath`. False if the file cannot be read. Without a path: line 1, column 1.
[[nodiscard]] bool LocateInSource(const std::string& sourcePath, int offset, std::string_view token, TextPlace& place);

// One operator on two values held as text. `entity` reports a division by zero.
struct OperatorResult {
    bool possible = false;  // the operation could be carried out
    bool truth = false;     // of a comparison
    std::string text;       // of an assignment or calculation
};
// `operatorId` is one of OperatorIds.h. Ids 16 to 25 on either side, and 28 and 31 on the right, must have been mapped
// to 1 by the caller.
OperatorResult EvaluateOperator(std::string_view left, int leftType, int operatorId, std::string_view right,
                                int rightType, const CTSEntity& entity);

}  // namespace kvl
