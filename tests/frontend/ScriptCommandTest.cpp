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
        Id("loopMode", command.loopMode);
        Text("listName1", command.listName1);
        Text("listName2", command.listName2);
        Text("loopSeparator", command.loopSeparator);
        Id("placeholderKind", command.placeholderKind);
        Text("placeholderName", command.placeholderName);
        Id("conditionForm", command.conditionForm);
        Text("conditionOperand", command.conditionOperand);
        Text("beginText", command.beginText);
        Text("commandText", command.commandText);
        Text("endText", command.endText);
        Literals(command.weakLiterals);
        Text("streamText", command.streamText);
        Text("operand1", command.operand1);
        Number("operand1Type", command.operand1Type);
        Number("operand1ListMark", command.operand1ListMark);
        Text("initialRange.literal", command.initialRange.literal);
        Text("initialRange.name", command.initialRange.name);
        Text("castType", command.castType);
        Text("typeName", command.typeName);
        Number("declaredWithValue", command.declaredWithValue);
        Number("typeWithColons", command.typeWithColons);
        Text("operand2", command.operand2);
        Number("operand2Kind", command.operand2Kind);
        Number("operand1IsMacro", command.operand1IsMacro);
        Number("operand2IsMacro", command.operand2IsMacro);
        Text("operand1Text", command.operand1Text);
        Text("operand2Text", command.operand2Text);
        Id("operatorId", command.operatorId);
        Text("operatorText", command.operatorText);
        Text("conditionText", command.conditionText);
        Text("literalMacroText", command.literalMacroText);
        if (command.negation != condition_negation_no) Id("negation", command.negation);
        Text("macroName", command.macroName);
        Arguments("operand1Arguments", command.operand1Arguments);
        Arguments("operand2Arguments", command.operand2Arguments);
        Arguments("arguments", command.arguments);
        for (const FormalParameter& parameter : command.formalParameters) {
            fields_ << "formalParameter=" << parameter.annotation << "|" << parameter.name << "|" << parameter.typeName
                    << "|" << parameter.isList << parameter.isReference << "\n";
        }
        Text("scriptMacroName", command.scriptMacroName);
        Text("patternMacroName", command.patternMacroName);
    }

    std::string Fields() const { return fields_.str(); }

private:
    void Id(const char* name, int id) {
        if (id != 0) fields_ << name << "=" << (id == kNewCommentSubkind ? "42" : GetCommandName(id)) << "\n";
    }
    void Number(const char* name, int value) {
        if (value != 0) fields_ << name << "=" << value << "\n";
    }
    void Text(const char* name, const std::string& text) {
        if (!text.empty()) fields_ << name << "=" << text << "\n";
    }
    void Literals(const std::vector<WeakLiteral>& literals) {
        for (const WeakLiteral& literal : literals)
            fields_ << "weakLiteral=" << literal.name << "|" << literal.text << literal.sourceText << "\n";
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
