// Texts become scripts, patterns, types and data: each is compiled or parsed first, and the variable takes it when that
// went well, so that a failure leaves the variable as it was.
#include <memory>
#include <utility>

#include "builtins/FileOperations.h"
#include "frontend/TypeFrontEnd.h"
#include "interpreter/ScriptLoading.h"
#include "messages/FileReports.h"
#include "messages/Log.h"
#include "text/Paths.h"
#include "typeschema/InputParser.h"
#include "values/ListAssignment.h"

namespace kvl {

namespace {

std::string_view LastPart(std::string_view label) {
    const std::size_t colon = label.rfind(':');
    return colon == std::string_view::npos ? label : label.substr(colon + 1);
}

// --- scripts and patterns ---

void NameMacro(CPatternSchema& macro, int kind, const std::string& label) {
    EntityNames& names = *macro.names;
    const bool isPattern = kind == kEntityMacroPattern;
    (isPattern ? names.patternMacroShortName : names.scriptMacroShortName) = LastPart(label);
    (isPattern ? names.patternMacroName : names.scriptMacroName) = label;
    names.name = (isPattern ? "Pattern Macro " : "Script Macro ") + label + " ( " + macro.GetDisplayPath() + " )";
}

// The variable takes the macro, which must bear its name.
bool BindMacro(const CPatternSchema& schema, int kind, std::shared_ptr<CPatternSchema> macro, CVariable& variable) {
    if (LastPart(variable.label) != macro->script->macroName) {
        const MessageId fault = kind == kEntityMacroPattern ? ERR_DECL_SCRIPT_VAR_13 : ERR_DECL_SCRIPT_VAR_12;
        return schema.Fail(fault, ERRSTR_VAR_NAME, variable.label);
    }
    NameMacro(*macro, kind, variable.label);
    variable.DestroyValue();
    static_cast<CVariableKVLMacro&>(variable).macroSchema = std::move(macro);
    return true;
}

// `macro` is null when compiling failed.
bool CheckAndBindMacro(const CPatternSchema& schema, int kind, std::unique_ptr<CPatternSchema> macro,
                       const ParseInfo& info, CVariable& variable) {
    if (!macro || !CheckBlocks(*macro)) return false;
    ReportParse(info);
    return BindMacro(schema, kind, std::move(macro), variable);
}

// --- types ---

// `type` is null when the text was not accepted.
bool CompileType(const CPatternSchema& schema, const std::shared_ptr<CTypeSchema>& type, ParseInfo info,
                 const CVariable& variable) {
    std::string name;
    if (!type || !type->CompileDeclaration(RootSchema(), name)) return false;
    info.kindName = GetEntityKindName(kEntityType);
    ReportParse(info);
    if (LastPart(variable.label) != name) return schema.Fail(ERR_DECL_SCRIPT_VAR_11, ERRSTR_VAR_NAME, variable.label);
    type->SetMainTypeName(variable.label);
    return true;
}

void BindType(std::shared_ptr<CTypeSchema> type, CVariable& variable) {
    variable.DestroyValue();
    variable.typeSchema = std::move(type);
}

// --- data ---

// Null after a message.
CTypeSchema* FindTypeSchema(const CPatternSchema& schema, std::string_view typeName) {
    const CVariable* type = schema.FindDeclaredType(typeName);
    if (type && type->typeSchema && type->typeSchema->GetRootVariable()) {
        return static_cast<CTypeSchema*>(type->typeSchema.get());
    }
    const bool isOtherName = !type && schema.variableTable.Find(typeName);
    MessageContext context = schema.GetMessageContext();
    context.Set(ERRSTR_VAR_NAME, typeName).Set(ERRSTR_VAR_TYPE, typeName);
    Report(isOtherName ? ERR_DECL_SCRIPT_PARAM_5 : schema.Twin(ERR_DECL_SCRIPT_VAR_3), context);
    return nullptr;
}

// The type tells its next instance what that parses: a file or a stream.
void SetDataSource(CTypeSchema& type, std::string_view path, std::string_view streamName) {
    type.dataPath = path;
    type.dataFile = PathPart(path, PathMode::NameAndExtension);
    type.dataStream = streamName;
}

}  // namespace

bool LoadMacroFile(CPatternSchema& schema, int kind, std::string_view path, CVariable& variable) {
    ParseInfo info;
    std::unique_ptr<CPatternSchema> macro = CompileFile(kind, path, info);
    return CheckAndBindMacro(schema, kind, std::move(macro), info, variable);
}

bool LoadMacroStream(CPatternSchema& schema, int kind, std::string_view name, std::string& text, CVariable& variable) {
    ParseInfo info;
    std::unique_ptr<CPatternSchema> macro = CompileText(kind, name, text, info, schema.GetMessageContext());
    return CheckAndBindMacro(schema, kind, std::move(macro), info, variable);
}

bool LoadTypeFile(CPatternSchema& schema, std::string_view path, CVariable& variable) {
    ParseInfo info;
    info.fileName = PathPart(path, PathMode::NameAndExtension);
    info.displayPath = PathPart(path, PathMode::Display);
    std::shared_ptr<CTypeSchema> type = ParseTypeFile(kEntityType, path);
    if (!CompileType(schema, type, std::move(info), variable)) return false;
    BindType(std::move(type), variable);
    return true;
}

bool LoadTypeStream(CPatternSchema& schema, std::string_view name, std::string& text, CVariable& variable) {
    ParseInfo info;
    info.streamName = name;
    std::shared_ptr<CTypeSchema> type = ParseTypeStream(kEntityType, name, text, schema.GetMessageContext());
    if (!CompileType(schema, type, std::move(info), variable)) return false;
    PrintAndLog("\nType Schema:\n");
    type->DumpElements();
    BindType(std::move(type), variable);
    return true;
}

bool LoadInstanceFile(CPatternSchema& schema, std::string_view path, std::string_view typeName,
                      std::string_view instanceName) {
    CTypeSchema* type = FindTypeSchema(schema, typeName);
    if (!type) return false;
    std::string text;
    int lineCount = 0;
    const MessageContext context = schema.GetMessageContext();
    if (!ReadSourceFile(path, text, lineCount, context)) return false;
    if (text.empty()) return ReportFileError(ERR_EXEC_SCRIPT_FILE_8, path, context);
    static_cast<void>(WriteDump(path));  // has reported; the data matters more
    SetDataSource(*type, path, {});
    return schema.ParseInstance(*type, std::move(text), typeName, instanceName, type->dataFile);
}

bool LoadInstanceStream(CPatternSchema& schema, std::string_view streamName, std::string text,
                        std::string_view typeName, std::string_view instanceName) {
    CTypeSchema* type = FindTypeSchema(schema, typeName);
    if (!type) return false;
    SetDataSource(*type, {}, streamName);
    return schema.ParseInstance(*type, std::move(text), typeName, instanceName, streamName);
}

bool LoadBracketList(CPatternSchema& schema, CVariableKVLCategoryList& list, int elementType, std::string_view text) {
    const std::shared_ptr<CTypeSchema> type = schema.MakeListType(list.label, GetTypeName(elementType), true);
    if (!type) return false;
    CTypeSchema matches;
    matches.CopyDeclaration(*type);
    if (!matches.PrepareInstance(list.label)) return false;
    matches.dataStream = list.label;  // the text has no name of its own in messages
    matches.input.SetText(std::string(text));
    if (!ParseInput(matches)) return false;
    CopyFromList(list, static_cast<const CVariableKVLCategoryList&>(*matches.GetRootVariable()));
    return true;
}

}  // namespace kvl
