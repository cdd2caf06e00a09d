#include "interpreter/BlockFaults.h"

#include <algorithm>
#include <iterator>

namespace kvl {

namespace {

struct FaultRow {
    BlockKind kind;
    MessageId endWithoutBegin, beginWithoutEnd, differentTexts, closedByAnother;
};

// The rows of scripts; patterns have their twins. Where no message speaks of different texts or of another block's end,
// the missing end is what can be told.
constexpr FaultRow kFaults[] = {
    {BlockKind::Version, ERR_DECL_SCRIPT_HEADER_1, ERR_DECL_SCRIPT_HEADER_2, ERR_DECL_SCRIPT_HEADER_2,
     ERR_DECL_SCRIPT_HEADER_2},
    {BlockKind::Macro, ERR_DECL_SCRIPT_HEADER_6, ERR_DECL_SCRIPT_HEADER_7, ERR_DECL_SCRIPT_HEADER_6,
     ERR_DECL_SCRIPT_HEADER_7},
    {BlockKind::Loop, ERR_DECL_SCRIPT_LIST_7, ERR_DECL_SCRIPT_LIST_8, ERR_DECL_SCRIPT_LIST_9, ERR_DECL_SCRIPT_LIST_10},
    {BlockKind::Condition, ERR_DECL_SCRIPT_COND_7, ERR_DECL_SCRIPT_COND_8, ERR_DECL_SCRIPT_COND_9,
     ERR_DECL_SCRIPT_COND_10},
    {BlockKind::Separator, ERR_DECL_PATTERN_SEPAR_1, ERR_DECL_PATTERN_SEPAR_2, ERR_DECL_PATTERN_SEPAR_2,
     ERR_DECL_PATTERN_SEPAR_2},
    {BlockKind::Comment, ERR_DECL_SCRIPT_COMM_2, ERR_DECL_SCRIPT_COMM_1, ERR_DECL_SCRIPT_COMM_1,
     ERR_DECL_SCRIPT_COMM_1},
};

MessageId RowFor(BlockFault fault, BlockKind kind) {
    const FaultRow& row =
        *std::find_if(std::begin(kFaults), std::end(kFaults), [kind](const FaultRow& r) { return r.kind == kind; });
    switch (fault) {
        case BlockFault::EndWithoutBegin:
            return row.endWithoutBegin;
        case BlockFault::BeginWithoutEnd:
            return row.beginWithoutEnd;
        case BlockFault::DifferentTexts:
            return row.differentTexts;
        case BlockFault::ClosedByAnother:
            return row.closedByAnother;
    }
    return row.endWithoutBegin;
}

std::string_view BehindFirstWord(std::string_view text) {
    const std::size_t blank = text.find(' ');
    return blank == std::string_view::npos ? std::string_view() : text.substr(blank + 1);
}

// The command's text behind its keyword: "A , B", "A == 1", "M(#X::T)". The text of a comparison is kept apart from the
// command's.
std::string_view Definition(const PatternCommand& command) {
    if (!command.condition->conditionText.empty()) return BehindFirstWord(command.condition->conditionText);
    return BehindFirstWord(BehindFirstWord(command.commandText));
}

void SetBeginText(MessageContext& context, const PatternCommand& begin) {
    const std::string_view definition = Definition(begin);
    context.Set(ERRSTR_BEGIN_LOOP_DEFINITION, definition).Set(ERRSTR_BEGIN_CONDITION_DEFINITION, definition);
    context.Set(ERRSTR_BEGIN_SCRIPT_DEFINITION, definition).Set(ERRSTR_BEGIN_PATTERN_DEFINITION, definition);
}

void SetEndText(MessageContext& context, const PatternCommand& end) {
    const std::string_view definition = Definition(end);
    context.Set(ERRSTR_END_LOOP_DEFINITION, definition).Set(ERRSTR_END_CONDITION_DEFINITION, definition);
    context.Set(ERRSTR_END_SCRIPT_DEFINITION, definition).Set(ERRSTR_END_PATTERN_DEFINITION, definition);
}

void SetMacroName(MessageContext& context, const PatternCommand& command) {
    const std::string_view name = command.macroHead->MacroName();
    context.Set(ERRSTR_SCRIPT_NAME, name).Set(ERRSTR_PATTERN_NAME, name);
}

BlockContext ContextAt(const CPatternSchema& schema, int line) {
    BlockContext context;
    static_cast<MessageContext&>(context) = schema.GetMessageContext(line);
    return context;
}

}  // namespace

BlockKind KindOfBlock(const PatternCommand& command) {
    switch (command.kind) {
        case cmd_kind_begin_end_verb_constant_string:
            return BlockKind::Version;
        case cmd_kind_begin_end_declare_macro:
            return BlockKind::Macro;
        case cmd_kind_begin_end_if_condition:
            return BlockKind::Condition;
        case cmd_kind_begin_end_verb_stream:
            return command.subkind == cmd_comment ? BlockKind::Comment : BlockKind::Separator;
        default:
            return BlockKind::Loop;
    }
}

bool ReportBlockFault(const CPatternSchema& schema, BlockFault fault, const PatternCommand* begin,
                      const PatternCommand* end) {
    const BlockKind kind = KindOfBlock(begin ? *begin : *end);
    const MessageId row = RowFor(fault, kind);
    const bool lacksEnd = begin && row == RowFor(BlockFault::BeginWithoutEnd, kind);
    BlockContext context = ContextAt(schema, (lacksEnd || !end ? *begin : *end).lineNumber);
    if (begin) {
        context.relatedLine = begin->lineNumber;
        SetBeginText(context, *begin);
    }
    if (end) SetEndText(context, *end);
    SetMacroName(context, end ? *end : *begin);
    return Report(schema.Twin(row), context);
}

bool ReportStructure(const CPatternSchema& schema, MessageId scriptRow, int line, const PatternCommand* command,
                     int relatedLine, std::string_view variableName) {
    BlockContext context = ContextAt(schema, line);
    context.relatedLine = relatedLine;
    if (command) SetMacroName(context, *command);
    if (!variableName.empty()) context.Set(ERRSTR_VAR_NAME, variableName);
    return Report(schema.Twin(scriptRow), context);
}

}  // namespace kvl
