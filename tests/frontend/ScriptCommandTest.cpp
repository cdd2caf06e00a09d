// The grammar: what each command leaves in its record, field by field.

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

struct CommandRow {
    const char* name;
    std::string_view source;
    std::string_view fields;
};
void PrintTo(const CommandRow& row, std::ostream* stream) {
    *stream << row.source;
}

class ScriptCommandTest : public ScriptTest, public testing::WithParamInterface<CommandRow> {};

constexpr CommandRow kBlockRows[] = {
    {"Header", "$BEGIN KVL VERSION = \"1\"\"0\" $", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_verb_constant_string
subkind=cmd_kvl_file_version
beginText=BEGIN
commandText=BEGIN KVL VERSION "1""0"
weakLiteral=VERSION|1"0
)"},
    {"Footer", "$END KVL VERSION=\"1.0.0\"$", R"(beginEnd=cmd_end
kind=cmd_kind_begin_end_verb_constant_string
subkind=cmd_kvl_file_version
commandText=END KVL VERSION "1.0.0"
endText=END
weakLiteral=VERSION|1.0.0
)"},
    {"Separator", "$BEGIN SEPARATOR$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_verb_stream
subkind=cmd_separator
beginText=BEGIN
commandText=BEGIN SEPARATOR
)"},
    {"EndCommentAlone", "$END COMMENT$", R"(beginEnd=cmd_end
kind=cmd_kind_begin_end_verb_stream
subkind=cmd_comment
commandText=END COMMENT
endText=END
)"},
    {"ScriptWithoutParameters", "$BEGIN SCRIPT MAIN()$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_declare_macro
subkind=cmd_declare_script_macro
beginText=BEGIN
commandText=BEGIN SCRIPT MAIN()
scriptMacroName=MAIN
)"},
    {"ScriptWithParameters", "$BEGIN SCRIPT A(#X ::STRING, &Y ::LIST_TYPE[], Z ::A:B)$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_declare_macro
subkind=cmd_declare_script_macro
beginText=BEGIN
commandText=BEGIN SCRIPT A(#X::STRING, &Y::LIST_TYPE[], Z::A:B)
formalParameter=#|X|STRING|00
formalParameter=&|Y|LIST_TYPE|11
formalParameter=|Z|A:B|00
scriptMacroName=A
)"},
    {"EndPattern", "$END PATTERN P(#X::T)$", R"(beginEnd=cmd_end
kind=cmd_kind_begin_end_declare_macro
subkind=cmd_declare_pattern_macro
commandText=END PATTERN P(#X::T)
endText=END
formalParameter=#|X|T|00
patternMacroName=P
)"},
    {"OneList", "$BEGIN ALL A:B$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_loop_list
subkind=cmd_with_list
loopMode=cmd_loop_mode_single
listName1=A:B
beginText=BEGIN
commandText=BEGIN ALL A:B
)"},
    {"TwoListsRead", "$BEGIN ALL A, :B$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_loop_list
subkind=cmd_with_list
loopMode=cmd_loop_mode_double_read
listName1=A
listName2=:B
loopSeparator=,
beginText=BEGIN
commandText=BEGIN ALL A , :B
)"},
    {"TwoListsChange", "$END ALL A CHANGE B$", R"(beginEnd=cmd_end
kind=cmd_kind_begin_end_loop_list
subkind=cmd_with_list
loopMode=cmd_loop_mode_double_change
listName1=A
listName2=B
loopSeparator=CHANGE
commandText=END ALL A CHANGE B
endText=END
)"},
    {"TwoListsExtend", "$BEGIN ALL A EXTEND B$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_loop_list
subkind=cmd_with_list
loopMode=cmd_loop_mode_double_extend
listName1=A
listName2=B
loopSeparator=EXTEND
beginText=BEGIN
commandText=BEGIN ALL A EXTEND B
)"},
};
INSTANTIATE_TEST_SUITE_P(Blocks, ScriptCommandTest, testing::ValuesIn(kBlockRows), RowName<CommandRow>);

constexpr CommandRow kConditionRows[] = {
    {"NotEqual", "$BEGIN IF A != 1$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand1_operand2
conditionForm=cmd_condition_operand1_operator_operand2
beginText=BEGIN
commandText=BEGIN 
operand1=A
operand2=1
operand2Kind=10
operand1Text=A
operand2Text=1
operatorId=cmd_operator_equal
operatorText=!=
conditionText=IF A != 1
negation=cmd_condition_negation_yes
)"},
    {"EqualLiteral", "$END IF A == \"x\"\"y\"$", R"(beginEnd=cmd_end
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand1_operand2
conditionForm=cmd_condition_operand1_operator_operand2
commandText=END 
endText=END
weakLiteral=OPERAND2|x"y
operand1=A
operand2=x"y
operand2Kind=9
operand1Text=A
operand2Text="x""y"
operatorId=cmd_operator_equal
operatorText===
conditionText=IF A == x"y
)"},
    {"CallsCompared", "$BEGIN IF M(A) <= N(\"q\")$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand1_operand2
conditionForm=cmd_condition_operand1_operator_operand2
beginText=BEGIN
commandText=BEGIN 
operand1=M
operand2=N
operand1IsMacro=1
operand2IsMacro=1
operand1Text=M(A)
operand2Text=N("q")
operatorId=cmd_operator_lte
operatorText=<=
conditionText=IF M <= N
macroName=N
operand1Arguments=0|A
operand2Arguments=9|q
weakLiteral=ACTUALARGUMENT|q
)"},
    {"Name", "$BEGIN IF A$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_identifier
conditionForm=cmd_condition_identifier_is_empty
conditionOperand=A
beginText=BEGIN
commandText=BEGIN IF A
)"},
    {"NotName", "$BEGIN IF !:A$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_identifier
conditionForm=cmd_condition_identifier_is_empty
conditionOperand=:A
beginText=BEGIN
commandText=BEGIN IF :A
negation=cmd_condition_negation_yes
)"},
    {"Call", "$BEGIN IF M(1)$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_macro
conditionForm=cmd_condition_macro_return_is_not_empty
conditionOperand=M(1)
beginText=BEGIN
commandText=BEGIN IF M(1)
macroName=M
arguments=10|1
)"},
    {"NotCall", "$BEGIN IF !M()$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_macro
conditionForm=cmd_condition_macro_return_is_not_empty
conditionOperand=!M()
beginText=BEGIN
commandText=BEGIN IF !M()
negation=cmd_condition_negation_yes
macroName=M
)"},
    {"LineMark", "$BEGIN IF \\n$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_placeholder_normal
placeholderKind=cmd_newline
placeholderName=\n
conditionForm=cmd_condition_placeholder_normal_is_not_empty
beginText=BEGIN
commandText=BEGIN IF 
)"},
    {"NotLineMark", "$BEGIN IF !/$", R"(beginEnd=cmd_begin
kind=cmd_kind_begin_end_if_condition
subkind=cmd_with_condition_operand_placeholder_normal
placeholderKind=cmd_continueline
placeholderName=/
conditionForm=cmd_condition_placeholder_normal_is_not_empty
beginText=BEGIN
commandText=BEGIN IF 
negation=cmd_condition_negation_yes
)"},
};
INSTANTIATE_TEST_SUITE_P(Conditions, ScriptCommandTest, testing::ValuesIn(kConditionRows), RowName<CommandRow>);

constexpr CommandRow kDeclarationRows[] = {
    {"Plain", "$X ::STRING$", R"(kind=cmd_kind_variable_operand1_type
commandText=X::STRING
operand1=X
typeName=STRING
declaredWithValue=1
operand1Text=X::STRING
)"},
    {"ListOfSize", "$X ::A:B[3]$", R"(kind=cmd_kind_variable_operand1_type
commandText=X::A:B
operand1=X
operand1ListMark=18
initialRange.literal=3
typeName=A:B
declaredWithValue=1
operand1Text=X::A:B
)"},
    {"ListOfNamedSize", "$X ::STRING[N:M]$", R"(kind=cmd_kind_variable_operand1_type
commandText=X::STRING
operand1=X
operand1ListMark=18
initialRange.name=N:M
typeName=STRING
declaredWithValue=1
operand1Text=X::STRING
)"},
    {"OpenList", "$X ::STRING[]$", R"(kind=cmd_kind_variable_operand1_type
commandText=X::STRING
operand1=X
operand1ListMark=18
typeName=STRING
declaredWithValue=1
operand1Text=X::STRING
)"},
    {"WithValue", "$X ::INTEGER = -1$", R"(kind=cmd_kind_variable_operand1_type_operand2
commandText=X::INTEGER = -1
operand1=X
typeName=INTEGER
operand2=-1
operand2Kind=10
operand1Text=X::INTEGER
operand2Text=-1
operatorId=cmd_operator_assign
operatorText==
)"},
    {"WithCast", "$X ::BOOL[2] = (::STRING) TRUE$", R"(kind=cmd_kind_variable_operand1_type_operand2
commandText=X::BOOL = (::STRING) TRUE
operand1=X
initialRange.literal=2
castType=STRING
typeName=BOOL
operand2=TRUE
operand2Kind=12
operand1Text=X::BOOL
operand2Text=(::STRING) TRUE
operatorId=cmd_operator_assign
operatorText==
)"},
    {"Constant", "$#X ::STRING = \"a\"$", R"(kind=cmd_kind_variable_operand1_type
commandText=#X::STRING
weakLiteral=OPERAND2|a
operand1=X
typeName=STRING
operand2=a
operand2Kind=9
operand1Text=#X::STRING
operand2Text="a"
)"},
    {"Type", "$::P ::KVL:TYPE = D:FILE(\"p.txt\")$", R"(kind=cmd_kind_variable_operand1_type_operand2
subkind=cmd_call_macro
commandText=::P::KVL:TYPE = D:FILE("p.txt")
operand1=P
typeName=KVL:TYPE
typeWithColons=1
operand2=D:FILE
operand2IsMacro=1
operand1Text=::P::KVL:TYPE
operand2Text=D:FILE("p.txt")
operatorId=cmd_operator_assign
operatorText==
macroName=D:FILE
operand2Arguments=9|p.txt
weakLiteral=ACTUALARGUMENT|p.txt
)"},
    {"TypeWithoutValue", "$::P ::KVL:TYPE$", R"(kind=cmd_kind_variable_operand1_type
commandText=::P::KVL:TYPE
operand1=P
typeName=KVL:TYPE
declaredWithValue=1
typeWithColons=1
operand1Text=::P::KVL:TYPE
)"},
    {"Script", "$R() ::KVL:SCRIPT = S$", R"(kind=cmd_kind_variable_operand1_type_operand2
subkind=cmd_call_macro
commandText=R()::KVL:SCRIPT = S
operand1=R
typeName=KVL:SCRIPT
operand2=S
operand1IsMacro=1
operand1Text=R()::KVL:SCRIPT
operand2Text=S
operatorId=cmd_operator_assign
operatorText==
macroName=R
)"},
};
INSTANTIATE_TEST_SUITE_P(Declarations, ScriptCommandTest, testing::ValuesIn(kDeclarationRows), RowName<CommandRow>);

constexpr CommandRow kStatementRows[] = {
    {"Assignment", "$X = A:B$", R"(kind=cmd_kind_variable_operand1_operand2
commandText=X = A:B
operand1=X
operand2=A:B
operand1Text=X
operand2Text=A:B
operatorId=cmd_operator_assign
operatorText==
)"},
    {"AssignmentOfLiteral", "$X += \"a\"\"b\"$", R"(kind=cmd_kind_variable_operand1_operand2
commandText=X += "a""b"
weakLiteral=OPERAND2|a"b
operand1=X
operand2=a"b
operand2Kind=9
operand1Text=X
operand2Text="a""b"
operatorId=cmd_operator_plus
operatorText=+=
)"},
    {"AssignmentOfFloat", "$:X:Y *= 1.5$", R"(kind=cmd_kind_variable_operand1_operand2
commandText=:X:Y *= 1.5
operand1=:X:Y
operand2=1.5
operand2Kind=11
operand1Text=:X:Y
operand2Text=1.5
operatorId=cmd_operator_multiply
operatorText=*=
)"},
    {"AssignmentWithCast", "$X = (::STRING[N]) Y$", R"(kind=cmd_kind_variable_operand1_operand2
commandText=X = (::STRING) Y
operand1=X
operand1ListMark=18
initialRange.name=N
castType=STRING
operand2=Y
operand1Text=X
operand2Text=(::STRING) Y
operatorId=cmd_operator_assign
operatorText==
)"},
    {"AssignmentToCall", "$D:FILE(\"o\") = R(IN)$", R"(kind=cmd_kind_variable_operand1_operand2
subkind=cmd_call_macro
commandText=D:FILE("o") = R(IN)
operand1=D:FILE
operand2=R
operand1IsMacro=1
operand2IsMacro=1
operand1Text=D:FILE("o")
operand2Text=R(IN)
operatorId=cmd_operator_assign
operatorText==
macroName=R
operand1Arguments=9|o
weakLiteral=ACTUALARGUMENT|o
operand2Arguments=0|IN
)"},
    {"AssignmentToTypeName", "$::X = Y$", R"(kind=cmd_kind_variable_operand1_operand2
commandText=X = Y
operand1=X
typeWithColons=1
operand2=Y
operand1Text=X
operand2Text=Y
operatorId=cmd_operator_assign
operatorText==
)"},
    {"Call", "$M(L[], 1, TRUE, 1.5, :A:~:B, \"a\"\"b\")$", R"(kind=cmd_kind_macro
subkind=cmd_call_macro
asStatement=1
commandText=M(L[], 1, TRUE, 1.5, :A:~:B, "a"b")
macroName=M
arguments=0|L|[]
arguments=10|1
arguments=12|TRUE
arguments=11|1.5
arguments=0|:A:~:B
arguments=9|a"b
weakLiteral=ACTUALARGUMENT|a"b
)"},
    {"CallWithoutArguments", "$A:M()$", R"(kind=cmd_kind_macro
subkind=cmd_call_macro
asStatement=1
commandText=A:M()
macroName=A:M
)"},
    {"QuotedCommand", "$\"text $X$ \"\"q\"\"\"$", R"(kind=cmd_kind_macro
subkind=cmd_literal_macro
commandText="text $X$ ""q"""
weakLiteral=LITERALMACRO|text $X$ "q"
literalMacroText=text $X$ "q"
)"},
    {"Placeholder", "$A :B:~:C$", R"(kind=cmd_kind_placeholder_identifier
subkind=cmd_identifier_value
placeholderKind=cmd_identifier_value
placeholderName=A:B:~:C
commandText=A:B:~:C
)"},
    {"PlaceholderNamedLikeBlock", "$BEGIN:X$", R"(kind=cmd_kind_placeholder_identifier
subkind=cmd_identifier_value
placeholderKind=cmd_identifier_value
placeholderName=BEGIN:X
commandText=BEGIN:X
)"},
    {"ShortName", "$:~:NAME$", R"(kind=cmd_kind_placeholder_identifier
subkind=cmd_identifier_value
placeholderKind=cmd_identifier_value
placeholderName=:~:NAME
commandText=:~:NAME
)"},
    {"FullNameMayEndInGap", "$A:~$", R"(kind=cmd_kind_placeholder_identifier
subkind=cmd_identifier_value
placeholderKind=cmd_identifier_value
placeholderName=A:~
commandText=A:~
)"},
    {"NewLine", "$\\n$", R"(kind=cmd_kind_placeholder_normal
subkind=cmd_newline
placeholderKind=cmd_newline
placeholderName=\n
commandText=\n
)"},
    {"ContinueLine", "$/$", R"(kind=cmd_kind_placeholder_normal
subkind=cmd_continueline
placeholderKind=cmd_continueline
placeholderName=/
commandText=/
)"},
    {"Text", "some text", R"(kind=cmd_kind_stream
subkind=cmd_stream
commandText=STREAM
streamText=some text
)"},
};
INSTANTIATE_TEST_SUITE_P(Statements, ScriptCommandTest, testing::ValuesIn(kStatementRows), RowName<CommandRow>);

TEST_P(ScriptCommandTest, FillsTheRecord) {
    ASSERT_TRUE(CompileStream(std::string(GetParam().source))) << Shown();
    ASSERT_EQ(list_.commands.size(), 1u);
    EXPECT_EQ(FieldDump(list_.commands[0]).Fields(), GetParam().fields);
}

// Comments become commands that no production makes.
TEST_F(ScriptTest, CommentWithDollarMarks) {
    ASSERT_TRUE(CompileStream("abc$/* x\r\n*/$def"));
    EXPECT_EQ(list_.DumpCommands(),
              "0 cmd_kind_stream abc\n1 cmd_kind_new_comment NEWCOMMENT\n2 cmd_kind_stream def\n");
    EXPECT_EQ(FieldDump(list_.commands[1]).Fields(),
              "kind=cmd_kind_new_comment\nsubkind=42\ncommandText=NEWCOMMENT\nstreamText=$/* x\r\n*/$\n");
}

TEST_F(ScriptTest, CommentBlock) {
    ASSERT_TRUE(CompileStream("$BEGIN COMMENT$ a $BEGIN COMMENT$ $END b\n$END \t COM\r\nMENT$ x"));
    ASSERT_EQ(list_.DumpCommands(),
              "0 cmd_kind_begin_end_verb_stream BEGIN COMMENT\n1 cmd_kind_stream  a $BEGIN COMMENT$ $END b\\n\n"
              "2 cmd_kind_begin_end_verb_stream COMMENT\n3 cmd_kind_stream  x\n");
    EXPECT_EQ(FieldDump(list_.commands[2]).Fields(),
              "beginEnd=cmd_end\nkind=cmd_kind_begin_end_verb_stream\nsubkind=cmd_comment\n"
              "commandText=COMMENT\nendText=END\n");
}

TEST_F(ScriptTest, CommentBlockWhoseEndIsSpacedOutKeepsIt) {
    ASSERT_TRUE(CompileStream("$BEGIN COMMENT$a$E N D COMMENT$"));
    ASSERT_EQ(list_.commands.size(), 3u);
    EXPECT_EQ(list_.commands[1].streamText, "a$E N D COMMENT$");
}

}  // namespace
}  // namespace kvl
