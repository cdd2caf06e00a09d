// The language has no command that reads, writes or loads: an assignment means it by what its two sides are. Every form
// is a row of one table; the first row whose two sides fit decides, and what fits none is an ordinary assignment.
#include <utility>

#include "builtins/FileOperations.h"
#include "interpreter/CPatternSchemaLoop.h"
#include "interpreter/ScriptLoading.h"
#include "messages/FileReports.h"

namespace kvl {

namespace {

constexpr std::string_view kFileCast = "KVL:FILE";
constexpr char kCandidateSeparator = ';';

// Takes the first of several candidate paths off.
std::string_view TakeCandidate(std::string_view& paths) {
    const std::size_t separator = paths.find(kCandidateSeparator);
    const std::string_view first = paths.substr(0, separator);
    paths = separator == std::string_view::npos ? std::string_view() : paths.substr(separator + 1);
    return first;
}

// The first candidate that exists; empty if none does. Says nothing, whatever the names look like.
std::string_view FindExisting(std::string_view paths) {
    while (!paths.empty()) {
        const std::string_view candidate = TakeCandidate(paths);
        FileState state;
        if (CheckFile(candidate, state)) return candidate;
    }
    return {};
}

// A list declared in place over one of these can be filled from a text.
constexpr bool IsSimpleElement(int typeId) {
    return (typeId >= kTypeStream && typeId <= kTypeFloat) || typeId == kTypeIdentifier;
}

// One assignment, as the rows ask about its sides and act on them.
class Form {
public:
    // Nothing is owned; all outlives this.
    Form(CPatternSchema& schema, AssignmentOperands& operands, RunContext& run)
        : schema_(schema), operands_(operands), run_(run) {}

    // --- the right side ---
    bool RightIsFile() const { return IsMacro(operands_.right, cmd_directory_method_file); }
    template <int kMacro>
    bool RightIs() const {
        return IsMacro(operands_.right, kMacro);
    }
    bool RightIsStream() const { return operands_.rightType == kTypeStream || RightIsStreamList(); }
    // Outside its loop a list of streams is no stream, but the list to be copied.
    bool RightIsOneText() const {
        if (operands_.rightType == kConstantString || operands_.rightType == kTypeStream) return true;
        return RightIsStreamList() && run_.loops.FindLoop(FindListOf(*operands_.right));
    }
    bool RightIsPattern() const { return operands_.rightType == kTypePattern; }

    // --- the left side ---
    template <int kTypeId>
    bool LeftIsA() const {
        return operands_.leftType == kTypeId;
    }
    bool LeftIsFile() const { return IsMacro(operands_.left, cmd_directory_method_file); }
    bool LeftIsOfDeclaredType() const {
        return operands_.leftType == kTypeInstance && schema_.IsDeclaredType(Left().typeName);
    }
    // Inside its loop a list is its current record, which takes the text as it stands.
    bool LeftIsSimpleListOutsideLoop() const {
        return operands_.leftList && IsSimpleElement(operands_.leftElementType) &&
               !run_.loops.FindLoop(operands_.leftList);
    }

    // --- what is done ---
    template <int kKind>
    bool LoadMacroFound() const {
        const std::string path = FindFile();
        return !path.empty() && LoadMacroFile(schema_, kKind, path, Left());
    }

    bool LoadTypeFound() const {
        const std::string path = FindFile();
        return !path.empty() && LoadTypeFile(schema_, path, Left());
    }

    bool LoadInstanceFound() const {
        if (IsBuiltByALoop()) return schema_.Fail(ERR_EXEC_SCRIPT_MACRO_9, ERRSTR_COMMAND, "");
        const std::string path = FindFile();
        return !path.empty() && LoadInstanceFile(schema_, path, Left().typeName, Left().label);
    }

    bool CopyFile() const { return CopyFileTo(schema_, TargetPath(), FindExisting(operands_.rightText)); }

    bool ReadFile() const {
        const std::string path = FindFile();
        return !path.empty() && ReadFileToStream(schema_, path, Left());
    }

    bool TestExistence() const {
        Left().SetText(FindExisting(operands_.rightText).empty() ? "FALSE" : "TRUE");
        return true;
    }

    bool TakeResult() const {
        WriteVariableValue(Left(), operands_.rightText, run_.loops);
        return true;
    }

    template <int kKind>
    bool LoadMacroText() const {
        return LoadText([this](std::string& text) {
            return LoadMacroStream(schema_, kKind, operands_.right->label, text, Left());
        });
    }

    bool LoadTypeText() const {
        return LoadText(
            [this](std::string& text) { return LoadTypeStream(schema_, operands_.right->label, text, Left()); });
    }

    bool LoadInstanceText() const {
        return LoadInstanceStream(schema_, operands_.right->label, std::string(RightText()), Left().typeName,
                                  Left().label);
    }

    bool WriteText() const { return WriteStreamToFile(schema_, TargetPath(), RightText()); }

    bool FillList() const {
        return LoadBracketList(schema_, *operands_.leftList, operands_.leftElementType, RightText());
    }

    bool WriteGenerated() const {
        const std::string& cast = operands_.castType;
        if (cast.empty() || cast == kFileCast) return WriteText();
        return schema_.Fail(ERR_DECL_SCRIPT_VAR_8, ERRSTR_VAR_TYPE1, cast, ERRSTR_VAR_TYPE2, kFileCast);
    }

private:
    static bool IsMacro(const CVariable* variable, int identifier) {
        return variable && variable->typeId == kTypeStatic &&
               static_cast<const CVariableKVLStaticMacro*>(variable)->macroCommand == identifier;
    }
    bool RightIsStreamList() const {
        return operands_.rightType == kTypeInstance && operands_.rightElementType == kTypeStream;
    }

    CVariable& Left() const { return *operands_.left; }
    // The value of a stream variable; the result of a pattern, a cell or a literal.
    std::string_view RightText() const {
        return operands_.rightType == kTypeStream ? operands_.right->GetText() : operands_.rightText;
    }
    // Looked for in all directories of the right side; empty after a message.
    std::string FindFile() const { return FindInSearchPath(operands_.rightText, false, schema_); }
    // A file is written to the first directory of the left side.
    std::string_view TargetPath() const {
        std::string_view candidates = operands_.leftText;
        return TakeCandidate(candidates);
    }

    // A source in UTF-8 is folded where it stands, so that the variable holds what was compiled.
    template <class Load>
    bool LoadText(const Load& load) const {
        std::string text(RightText());
        const bool loaded = load(text);
        if (operands_.rightType == kTypeStream && text != RightText()) operands_.right->SetText(text);
        return loaded;
    }

    // Is the instance the second list of a loop that appends to it or changes it?
    bool IsBuiltByALoop() const {
        bool isBuilt = false;
        run_.loops.FromTop([&](const RunningLoop& running) {
            const auto* loop = dynamic_cast<const CPatternSchemaLoop*>(&running);
            if (!loop || !operands_.leftList || loop->second.list != operands_.leftList) return;
            isBuilt |= loop->Mode() == cmd_loop_mode_double_change || loop->Mode() == cmd_loop_mode_double_extend;
        });
        return isBuilt;
    }

    CPatternSchema& schema_;
    AssignmentOperands& operands_;
    RunContext& run_;
};

struct FormRow {
    bool (Form::*right)() const;
    bool (Form::*left)() const;
    bool (Form::*run)() const;  // its result is that of the assignment
};

// clang-format off
constexpr FormRow kForms[] = {
    {&Form::RightIsFile,                &Form::LeftIsA<kTypeScript>,        &Form::LoadMacroFound<kEntityMacroScript>},
    {&Form::RightIsFile,                &Form::LeftIsA<kTypePattern>,       &Form::LoadMacroFound<kEntityMacroPattern>},
    {&Form::RightIsFile,                &Form::LeftIsA<kTypeType>,          &Form::LoadTypeFound},
    {&Form::RightIsFile,                &Form::LeftIsOfDeclaredType,        &Form::LoadInstanceFound},
    {&Form::RightIsFile,                &Form::LeftIsFile,                  &Form::CopyFile},
    {&Form::RightIsFile,                &Form::LeftIsA<kTypeStream>,        &Form::ReadFile},
    {&Form::RightIsFile,                &Form::LeftIsA<kTypeBool>,          &Form::TestExistence},
    {&Form::RightIs<cmd_stream_length>, &Form::LeftIsA<kTypeInteger>,       &Form::TakeResult},
    {&Form::RightIs<cmd_stream_delete>, &Form::LeftIsA<kTypeStream>,        &Form::TakeResult},
    {&Form::RightIsStream,              &Form::LeftIsA<kTypeScript>,        &Form::LoadMacroText<kEntityMacroScript>},
    {&Form::RightIsStream,              &Form::LeftIsA<kTypePattern>,       &Form::LoadMacroText<kEntityMacroPattern>},
    {&Form::RightIsStream,              &Form::LeftIsA<kTypeType>,          &Form::LoadTypeText},
    {&Form::RightIsStream,              &Form::LeftIsOfDeclaredType,        &Form::LoadInstanceText},
    {&Form::RightIsStream,              &Form::LeftIsFile,                  &Form::WriteText},
    {&Form::RightIsOneText,             &Form::LeftIsSimpleListOutsideLoop, &Form::FillList},
    {&Form::RightIsPattern,             &Form::LeftIsFile,                  &Form::WriteGenerated},
};
// clang-format on

}  // namespace

bool ExecuteBuiltIn(CPatternSchema& schema, const PatternCommand&, AssignmentOperands& operands, bool& handled,
                    RunContext& run) {
    handled = false;
    if (operands.operatorId != cmd_operator_assign) return false;
    const Form form(schema, operands, run);
    for (const FormRow& row : kForms) {
        if (!(form.*row.right)() || !(form.*row.left)()) continue;
        handled = true;
        return (form.*row.run)();
    }
    return false;
}

}  // namespace kvl
