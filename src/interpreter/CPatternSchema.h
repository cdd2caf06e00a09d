#pragma once
// A compiled script or pattern that runs: the root made for the main script, or a clone made for one macro call. The
// compiled part is shared; variables and the state of the running text belong to the object.
//
// The operations are spread over files by subject: CPatternSchema_Execution, _Text, _Variables, _Declaration,
// _Assignment, _Operands, _Literals, _Instances, _Loops, _MacroCalls, _Parameters.

#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreter/BuiltIns.h"
#include "interpreter/CompiledScript.h"
#include "interpreter/MacroCall.h"
#include "interpreter/OutputText.h"
#include "text/ProcessState.h"
#include "typeschema/CTSEntity.h"
#include "typeschema/CTypeSchema.h"
#include "values/EntityVariables.h"
#include "values/VariableTable.h"

namespace kvl {

class IdleCallees;

enum OverwriteMode : int {
    kOverwriteAll = 1,
    kOverwriteAsk = 2,
    kOverwriteSkip = 3,
    kOverwriteAbort = 4,
};

constexpr int kDeepestMacroCall = 10000;

// A value read for output: the text is valid until the next command.
struct VariableText {
    std::string_view text;
    int type = 0;
};

enum class CreateRecord { No, Yes };
enum class MissingLoop { Refuse, Allow };

class CPatternSchema final : public CTSEntity, public HeldEntity, public KnownTypes {
public:
    CPatternSchema() = default;
    explicit CPatternSchema(std::shared_ptr<CompiledScript> compiled) : script(std::move(compiled)) {}
    ~CPatternSchema() override;

    // A schema for one call of this macro: shares what is compiled, has variables of its own.
    std::unique_ptr<CPatternSchema> Clone() const;
    // Releases all variables, then the types.
    void ClearAll();
    // Removes what has been declared since variableTable.BeginLocals(). False if that does not restore the table.
    [[nodiscard]] bool TakeBackLocals();
    // The callees of this macro that wait for a call.
    const std::shared_ptr<IdleCallees>& Idle() const;

    const std::vector<PatternCommand>& Commands() const { return script->Commands(); }
    const std::string& EntityName() const override { return names->name; }
    void ReportDivisionByZero() const override;
    const CTypeSchema* FindLoadedType(std::string_view lastName) const override;

    // Raises the script message or its pattern twin at the present command; false always. `fill` sets parameters.
    template <class... Values>
    bool Fail(MessageId scriptRow, const Values&... values) const {
        MessageContext context = GetMessageContext();
        SetFields(context, values...);
        return Report(Twin(scriptRow), context);
    }

    // --- execution (_Execution, _Text) ---
    // Commands `first` to `last`, both included; false at the first that fails.
    [[nodiscard]] bool Execute(int first, int last, OutputText& output, RunContext& run);
    [[nodiscard]] bool ExecuteBlock(int begin, int end, OutputText& output, RunContext& run);
    [[nodiscard]] bool ExecuteCommand(int index, OutputText& output, RunContext& run);

    // May one more block or call nest in those that run? Reported if not.
    [[nodiscard]] bool MayNest() const;
    // May a text grow to this size? Reported if not.
    [[nodiscard]] bool FitsInText(std::size_t size) const;

    // --- variables (_Variables, _Declaration) ---
    // The one variable that a name selects. Of several the first is handed back and the ambiguity reported, unless
    // `quiet`; the result is false then.
    bool FindVariable(std::string_view name, CVariable*& variable, bool quiet = false) const;
    // The same, with the "not declared" message for a miss.
    [[nodiscard]] bool FindDeclaredVariable(std::string_view name, CVariable*& variable) const;
    [[nodiscard]] bool GetVariableText(std::string_view name, VariableText& result, const LoopStack& loops,
                                       CreateRecord createRecord = CreateRecord::No,
                                       MissingLoop allowMissingLoop = MissingLoop::Refuse) const;
    // The same for a variable that has been found.
    [[nodiscard]] bool ReadVariable(CVariable& variable, VariableText& result, const LoopStack& loops,
                                    CreateRecord createRecord = CreateRecord::No,
                                    MissingLoop allowMissingLoop = MissingLoop::Refuse) const;
    // Makes the variable and its storage and puts it into the table, which owns it; null after a message.
    CVariable* CreateVariable(std::string_view label, int typeId, std::string_view typeName);
    // Null after a message. `listMark` is kCategoryList for a list declared in place.
    CVariable* DeclareVariable(std::string_view name, std::string_view typeName, int listMark);
    CVariable* EnterVariable(std::string_view name, std::string_view typeName, int typeId);
    [[nodiscard]] bool ExecuteDeclaration(const PatternCommand& command, RunContext& run);
    [[nodiscard]] bool ExecuteDeclarationWithValue(const PatternCommand& command, RunContext& run);
    // Is there a variable of type 27 under this name in this entity or the root?
    bool IsDeclaredType(std::string_view name) const { return FindDeclaredType(name) != nullptr; }
    CVariable* FindDeclaredType(std::string_view name) const;

    // --- assignment (_Assignment, _Operands, _Literals) ---
    [[nodiscard]] bool ExecuteAssignment(const PatternCommand& command, RunContext& run);
    // The variable behind a name; with `evaluate` a macro runs and hands on its text. A method call runs in any case.
    struct Operand {
        CVariable* variable = nullptr;
        std::string text;      // result of a macro, or the cell of an instance of one element
        bool hasText = false;  // a macro has run
    };
    [[nodiscard]] bool ResolveOperand(std::string_view name, bool evaluate, CallArguments arguments, Operand& operand,
                                      RunContext& run);
    // A built-in, or a macro or type that the main script holds, by its full name; else a macro by the name behind its
    // last ":", with what stands in front as receiver. Null if there is none.
    CVariable* FindGlobal(std::string_view name, std::string_view& object, std::string_view& method) const;
    [[nodiscard]] bool EvaluateWeakLiteral(const std::vector<WeakLiteral>& literals, std::string_view name,
                                           std::string& text, RunContext& run);
    // EvaluateOperator with the types of categories, macros and patterns mapped to streams, and its message.
    [[nodiscard]] bool EvaluateOperands(std::string_view leftText, int leftType, int operatorId,
                                        std::string_view rightText, int rightType, OperatorResult& result) const;

    // --- instances (_Instances) ---
    [[nodiscard]] bool CreateInstanceOfLoadedType(std::string_view name, std::string_view typeName, bool bracket);
    // Makes an instance known under `name`: its variable, and its elements in the variable table.
    [[nodiscard]] bool EnterInstance(std::string_view name, std::string_view typeName,
                                     std::shared_ptr<CTypeSchema> instance, int elementTypeId);
    void EnterElements(const std::shared_ptr<CTypeSchema>& instance, int first, int last) {
        EnterElements(*instance, first, last);
    }
    void EnterElements(CTypeSchema& instance, int first, int last);
    // Parses `text` by the declared type into a new instance, and enters it. `source` names the file or stream.
    [[nodiscard]] bool ParseInstance(const CTypeSchema& declaredType, std::string&& text, std::string_view typeName,
                                     std::string_view instanceName, std::string_view source);
    // The one-column list type written by the system itself for `$name ::TYPE[]$`; compiled, not prepared. `blankAtEnd`
    // is the form used for filling such a list from text. Null after a message.
    std::shared_ptr<CTypeSchema> MakeListType(std::string_view label, std::string_view typeName, bool blankAtEnd);

    // --- loops (_Loops) ---
    [[nodiscard]] bool ExecuteLoop(int begin, int end, OutputText& output, RunContext& run);
    // The list behind a name; a nested one needs a running loop over its parent.
    CVariableKVLCategoryList* ListOf(std::string_view name, const LoopStack& loops) const;
    bool ReportListOutsideLoop(std::string_view variableLabel, std::string_view listLabel) const;
    // The key of the current record of the parent list; reported and null when no loop runs over it.
    const RecordPath* GetParentRecord(const CVariableKVLCategoryList& list, const LoopStack& loops) const;
    // Moves the cursor of the innermost loop over `list` on; false after a message. At the end `found` is false.
    [[nodiscard]] bool NextListRecord(ListCursor& cursor, bool& found, const LoopStack& loops) const;

    // --- macro calls (_MacroCalls, _Parameters) ---
    [[nodiscard]] bool ExecuteMacroCall(std::string_view macroName, CallArguments arguments,
                                        std::string_view commandText, bool asStatement, OutputText& output,
                                        RunContext& run);
    [[nodiscard]] bool CallForText(CVariable& macro, CallArguments arguments, std::string_view object,
                                   std::string_view method, std::string& text, RunContext& run);
    // Nothing is left to do for arguments that are evaluated already.
    [[nodiscard]] bool EvaluateArguments(CallArguments& arguments, RunContext& run);
    [[nodiscard]] bool EvaluateBuiltIn(int identifier, CallArguments arguments, std::string_view object,
                                       std::string_view method, std::string& text, RunContext& run);

    std::shared_ptr<CompiledScript> script;  // not changed once it is checked
    VariableTable variableTable;
    std::map<std::string, std::shared_ptr<CTypeSchema>, std::less<>> declaredTypes;  // instances by name
    std::list<std::shared_ptr<CTypeSchema>> typeList;  // every declared or loaded type, in order of creation
    bool utf8Source = false;
    int overwriteMode = kOverwriteAll;
    bool lineHasValue = false;  // a placeholder with a non-empty value stands on the current output line

private:
    friend class MacroRun;

    static void SetFields(MessageContext&) {}
    template <class Value, class... Rest>
    static void SetFields(MessageContext& context, MessageParameter parameter, const Value& value,
                          const Rest&... rest) {
        context.Set(parameter, value);
        SetFields(context, rest...);
    }

    // _Execution
    [[nodiscard]] bool ExecuteCondition(int begin, int end, OutputText& output, RunContext& run);
    [[nodiscard]] bool ExecuteVerbatimBlock(int begin, int end, OutputText& output, RunContext& run);
    [[nodiscard]] bool ExecuteMacroBlock(int begin, int end, OutputText& output, RunContext& run);
    [[nodiscard]] bool ExecuteLiteralMacro(const PatternCommand& command, OutputText& output, RunContext& run);
    std::shared_ptr<const CommandList> FragmentOf(const std::string& text);
    // _Text
    [[nodiscard]] bool WriteStream(int index, OutputText& output);
    void WriteLineEnd(const TextChunk& chunk, OutputText& output) const;
    [[nodiscard]] bool WriteNormalPlaceholder(const PatternCommand& command, OutputText& output);
    [[nodiscard]] bool WriteIdentifierPlaceholder(int index, OutputText& output, RunContext& run);

    // _Declaration
    CVariable* DeclareList(std::string_view name, std::string_view typeName);
    [[nodiscard]] bool AppendDeclaredRecords(const InitialRange& range, CVariable& list, RunContext& run);

    // _Instances
    void TakeInstance(CVariable& variable, std::shared_ptr<CTypeSchema> instance);
    void RemoveElements(const CVariable& holder, const CTypeSchema& instance);
    // Frees the instances that a load has replaced, but those over which a loop still runs.
    void FreeReplacedInstances(const LoopStack& loops);
    std::vector<std::shared_ptr<CTypeSchema>> replacedInstances_;
    mutable std::shared_ptr<IdleCallees> idleCallees_;  // made for the first call; running calls hold them too

    friend class Assignment;

    std::vector<VariableTable::Answer> placeholders_;  // by command index, from the first placeholder on
    const MacroText* macroText_ = nullptr;  // how this run writes its literal text; null in a script. Not owned
};

// The schema of the main script of this run.
inline CPatternSchema& RootSchema() {
    return *Process().root;
}

}  // namespace kvl
