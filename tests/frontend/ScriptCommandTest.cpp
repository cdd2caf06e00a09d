// The grammar: what each command leaves in its record, field by field, and the list of commands as a whole.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "frontend/ScriptSource.h"

namespace kvl {
namespace {

// Writes the fields that hold something as `name=value`, one to a line, in the order of the record.
class FieldDump {
public:
    explicit FieldDump(const PatternCommand& command) {
        Id("beginEnd", command.beginEnd);
        Id("kind", command.kind);
        Id("subkind", command.subkind);
        Number("asStatement", command.asStatement);
        Id("loopMode", command.loop->loopMode);
        Text("listName1", command.loop->listName1);
        Text("listName2", command.loop->listName2);
        Text("loopSeparator", command.loop->loopSeparator);
        Id("placeholderKind", command.placeholderKind);
        Text("placeholderName", command.placeholderName);
        Id("conditionForm", command.condition->conditionForm);
        Text("conditionOperand", command.condition->conditionOperand);
        Text("beginText", command.beginText);
        Text("commandText", command.commandText);
        Text("endText", command.endText);
        Literals(command.weakLiterals);
        Text("streamText", command.streamText);
        Text("operand1", command.sides->operand1);
        Number("operand1Type", command.sides->operand1Type);
        Number("operand1ListMark", command.sides->operand1ListMark);
        Text("initialRange.literal", command.sides->initialRange.literal);
        Text("initialRange.name", command.sides->initialRange.name);
        Text("castType", command.sides->castType);
        Text("typeName", command.sides->typeName);
        Number("declaredWithValue", command.sides->declaredWithValue);
        Number("typeWithColons", command.sides->typeWithColons);
        Text("operand2", command.sides->operand2);
        Number("operand2Kind", command.sides->operand2Kind);
        Number("operand1IsMacro", command.sides->operand1IsMacro);
        Number("operand2IsMacro", command.sides->operand2IsMacro);
        Text("operand1Text", command.sides->operand1Text);
        Text("operand2Text", command.sides->operand2Text);
        Id("operatorId", command.sides->operatorId);
        Text("operatorText", command.sides->operatorText);
        Text("conditionText", command.condition->conditionText);
        Text("literalMacroText", command.call->literalMacroText);
        if (command.negation != condition_negation_no) Id("negation", command.negation);
        Text("macroName", command.call->macroName);
        Arguments("operand1Arguments", command.sides->operand1Arguments);
        Arguments("operand2Arguments", command.sides->operand2Arguments);
        Arguments("arguments", command.call->arguments);
        for (const FormalParameter& parameter : command.macroHead->formalParameters) {
            fields_ << "formalParameter=" << parameter.annotation << "|" << parameter.name << "|" << parameter.typeName
                    << "|" << parameter.isList << parameter.isReference << "\n";
        }
        Text("scriptMacroName", command.macroHead->scriptMacroName);
        Text("patternMacroName", command.macroHead->patternMacroName);
    }

    std::string Fields() const { return fields_.str(); }

private:
    void Id(const char* name, int id) {
        if (id != 0) fields_ << name << "=" << (id == kNewCommentSubkind ? "42" : GetCommandName(id)) << "\n";
    }
    void Number(const char* name, int value) {
        if (value != 0) fields_ << name << "=" << value << "\n";
    }
    void Text(const char* name, std::string_view text) {
        if (!text.empty()) fields_ << name << "=" << text << "\n";
    }
    void Literals(const std::vector<WeakLiteral>& literals) {
        for (const WeakLiteral& literal : literals)
            fields_ << "weakLiteral=" << literal.name << "|" << literal.text << "\n";
    }
    void Arguments(const char* name, const std::vector<ActualArgument>& arguments) {
        for (const ActualArgument& argument : arguments) {
            fields_ << name << "=" << argument.typeId << "|" << argument.name << (argument.byValue ? "|[]" : "")
                    << "\n";
            Literals(argument.weakLiterals);
        }
    }

    std::ostringstream fields_;
};

class ScriptCommandTest : public ScriptTest, public testing::WithParamInterface<TextCase> {};
KVL_INSTANTIATE_CASES(ScriptCommandTest, "frontend/ScriptCommands.cases");

TEST_P(ScriptCommandTest, FillsTheRecord) {
    ASSERT_TRUE(CompileFile(BytesOf(GetParam().Line("source")))) << Shown();
    std::string fields, lines;
    for (const PatternCommand& command : list_.commands) {
        if (!fields.empty()) fields += '\n';
        fields += FieldDump(command).Fields();
        lines += std::to_string(command.lineNumber) + ' ';
    }
    ExpectIfGiven(GetParam(), "fields", fields);
    ExpectIfGiven(GetParam(), "dump", list_.DumpCommands());
    ExpectIfGiven(GetParam(), "lines", lines);
}

}  // namespace
}  // namespace kvl
