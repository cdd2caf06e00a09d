#include "builtins/StaticMacros.h"

#include "messages/Log.h"

namespace kvl {

namespace {

bool RunDump(CPatternSchema&, int, MacroValue& value) {
    for (const BoundArgument& argument : value.arguments) {
        if (!argument.variable) continue;
        value.result = argument.variable->DumpValue(value.run.loops);
        Print(value.result);
    }
    return true;
}

// The two line marks of a template, asked for without arguments.
bool RunLineMark(CPatternSchema&, int identifier, MacroValue& value) {
    if (identifier == cmd_newline) value.result = "\n";
    return true;
}

struct FamilyRow {
    int first, last;  // identifiers, both included
    bool (*run)(CPatternSchema& schema, int identifier, MacroValue& value);
};

constexpr FamilyRow kFamilies[] = {
    {cmd_generation_user_input, cmd_generation_guid, RunGenerationMacro},
    {cmd_dump, cmd_dump, RunDump},
    {cmd_list_reverse, cmd_list_empty, RunListMacro},
    {cmd_stream_merge, cmd_stream_length, RunStreamMacro},
    {cmd_static_make_directory, cmd_directory_method_set_path, RunDirectoryMacro},
    {cmd_newline, cmd_continueline, RunLineMark},
};

// A literal has the type of its form.
std::string_view TypeNameOf(const BoundArgument& argument) {
    return argument.variable ? std::string_view(argument.typeName) : GetTypeName(argument.typeId);
}

}  // namespace

bool RunStaticMacro(CPatternSchema& schema, int identifier, MacroValue& value) {
    value.result.clear();
    for (const FamilyRow& family : kFamilies) {
        if (identifier >= family.first && identifier <= family.last) return family.run(schema, identifier, value);
    }
    return false;
}

bool ReportArgumentCount(const CPatternSchema& schema, std::string_view macroDeclaration) {
    return schema.Fail(ERR_DECL_SCRIPT_MACRO_2, ERRSTR_MACRO_DECLARATION, macroDeclaration);
}

bool ReportArgumentType(const CPatternSchema& schema, const BoundArgument& argument, std::string_view expectedType,
                        std::string_view parameterName) {
    return schema.Fail(ERR_DECL_SCRIPT_MACRO_3, ERRSTR_VAR_TYPE, TypeNameOf(argument), ERRSTR_VAR_NAME, argument.name,
                       ERRSTR_VAR_TYPE2, expectedType, ERRSTR_VAR_NAME2, parameterName);
}

bool TakeStreamArgument(const CPatternSchema& schema, const BoundArgument& argument, std::string_view parameterName,
                        std::string_view& text) {
    if (argument.typeId == kConstantString) {
        text = argument.name;
        return true;
    }
    if (argument.typeId != kTypeStream) {
        return ReportArgumentType(schema, argument, GetTypeName(kTypeStream), parameterName);
    }
    text = argument.variable->GetText();
    return true;
}

}  // namespace kvl
