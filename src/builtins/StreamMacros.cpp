// The ten stream macros: their arguments are judged and read here, their texts made in StreamText.
#include <array>

#include "builtins/StaticMacros.h"
#include "builtins/StreamText.h"
#include "text/LowerCase.h"
#include "text/Numbers.h"
#include "text/Replace.h"

namespace kvl {

namespace {

constexpr std::size_t kMostArguments = 4;
constexpr std::string_view kTextTooLarge = "Text is larger than 2147483647 bytes. ";

enum class Further { Texts, Width };  // what the arguments behind the first are

struct StreamMacroRow {
    int id;
    std::string_view declaration;
    std::array<std::string_view, kMostArguments> parameters;  // empty behind the last
    Further further;
};

constexpr StreamMacroRow kStreamMacros[] = {
    {cmd_stream_merge, "KVL:STREAM:MERGE_STREAM(T, M, S, E)", {"T", "M", "S", "E"}, Further::Texts},
    {cmd_stream_replace, "KVL:STREAM:REPLACE_STREAM(T, A, B)", {"T", "A", "B"}, Further::Texts},
    {cmd_stream_replace2, "KVL:STREAM:REPLACE2_STREAM(T, S, E, B)", {"T", "S", "E", "B"}, Further::Texts},
    {cmd_stream_delete, "KVL:STREAM:DELETE_STREAM(T, A)", {"T", "A"}, Further::Texts},
    {cmd_stream_clear, "KVL:STREAM:CLEAR_STREAM(T)", {"T"}, Further::Texts},
    {cmd_stream_uppercase, "KVL:STREAM:UPPERCASE_STREAM(T)", {"T"}, Further::Texts},
    {cmd_stream_lowercase, "KVL:STREAM:LOWERCASE_STREAM(T)", {"T"}, Further::Texts},
    {cmd_stream_left, "KVL:STREAM:LEFT_STREAM(T, N)", {"T", "N"}, Further::Width},
    {cmd_stream_right, "KVL:STREAM:RIGHT_STREAM(T, N)", {"T", "N"}, Further::Width},
    {cmd_stream_length, "KVL:STREAM:LENGTH_STREAM(T)", {"T"}, Further::Texts},
};

std::size_t ParameterCount(const StreamMacroRow& macro) {
    std::size_t count = 0;
    while (count < kMostArguments && !macro.parameters[count].empty())
        ++count;
    return count;
}

bool CheckFirstArgument(const CPatternSchema& schema, const BoundArgument& argument, std::string_view parameter) {
    const bool isStream =
        argument.typeId == kTypeStream || argument.typeId == kCategoryStream || argument.typeId == kCategoryDistance;
    if (argument.variable && isStream) return true;
    return ReportArgumentType(schema, argument, GetTypeName(kTypeStream), parameter);
}

bool CheckFurtherArgument(const CPatternSchema& schema, const StreamMacroRow& macro, const BoundArgument& argument,
                          std::string_view parameter) {
    const bool isWidth = macro.further == Further::Width;
    const int variableType = isWidth ? kTypeInteger : kTypeStream;
    const int constantType = isWidth ? kConstantInteger : kConstantString;
    if (argument.typeId == variableType || argument.typeId == constantType) return true;
    return ReportArgumentType(schema, argument, GetTypeName(variableType), parameter);
}

bool CheckStreamArguments(const CPatternSchema& schema, const StreamMacroRow& macro, const MacroValue& value) {
    const std::vector<BoundArgument>& arguments = value.arguments;
    if (arguments.empty()) return ReportArgumentCount(schema, macro.declaration);
    if (!CheckFirstArgument(schema, arguments[0], macro.parameters[0])) return false;
    if (arguments.size() != ParameterCount(macro)) return ReportArgumentCount(schema, macro.declaration);
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (!CheckFurtherArgument(schema, macro, arguments[i], macro.parameters[i])) return false;
    }
    return true;
}

using Texts = std::array<std::string_view, kMostArguments>;

// A column gives the cell of the current record in its loop.
bool ReadArguments(const CPatternSchema& schema, const MacroValue& value, Texts& texts) {
    for (std::size_t i = 0; i < value.arguments.size(); ++i) {
        const BoundArgument& argument = value.arguments[i];
        texts[i] = argument.name;
        if (!argument.variable) continue;
        VariableText read;
        if (!schema.ReadVariable(*argument.variable, read, value.run.loops)) return false;
        texts[i] = read.text;
    }
    return true;
}

// Would the text that `replace` makes with `byWhat` be too large? Told from two harmless replacements, and only where
// it is possible at all.
template <class Replace>
bool GrowsTooLarge(std::string_view text, std::string_view byWhat, Replace replace) {
    if (text.size() * (byWhat.size() + 1) <= kLongestText) return false;
    const std::size_t kept = replace({}).size();
    const std::size_t count = replace(" ").size() - kept;
    return kept + count * byWhat.size() > kLongestText;
}

bool IsTooLarge(int identifier, const Texts& t) {
    if (identifier == cmd_stream_replace) {
        return GrowsTooLarge(t[0], t[2], [&](std::string_view by) { return ReplaceAll(t[0], t[1], by); });
    }
    if (identifier == cmd_stream_replace2) {
        return GrowsTooLarge(t[0], t[3], [&](std::string_view by) { return Replace2(t[0], t[1], t[2], by); });
    }
    return identifier == cmd_stream_merge && t[0].size() + t[1].size() > kLongestText;
}

std::string MakeText(int identifier, const Texts& t) {
    switch (identifier) {
        case cmd_stream_merge:
            return Merge(t[0], t[1], t[2], t[3]);
        case cmd_stream_replace:
            return ReplaceAll(t[0], t[1], t[2]);
        case cmd_stream_replace2:
            return Replace2(t[0], t[1], t[2], t[3]);
        case cmd_stream_delete:
            return ReplaceAll(t[0], t[1], {});
        case cmd_stream_clear:
            return Clear(t[0]);
        case cmd_stream_uppercase:
            return UpperCase(t[0]);
        case cmd_stream_lowercase:
            return LowerCase(t[0]);
        case cmd_stream_left:
            return Left(t[0], ReadInteger(t[1]));
        case cmd_stream_right:
            return Right(t[0], ReadInteger(t[1]));
        default:
            return std::to_string(t[0].size());
    }
}

}  // namespace

bool RunStreamMacro(CPatternSchema& schema, int identifier, MacroValue& value) {
    const StreamMacroRow& macro = kStreamMacros[identifier - cmd_stream_merge];
    Texts texts;
    if (!CheckStreamArguments(schema, macro, value) || !ReadArguments(schema, value, texts)) return false;
    if (IsTooLarge(identifier, texts)) return schema.Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, kTextTooLarge);
    value.result = MakeText(identifier, texts);
    return true;
}

}  // namespace kvl
