// The grammar of main scripts, scripts, patterns and fragments. A source is a flat sequence of text and commands; each
// production fills a field of the command under construction, and the closing dollar appends it. Blocks are paired
// afterwards, so $BEGIN ...$ and $END ...$ are commands like any other.

%code top {
// The generator calls this type alike in every grammar, and the program has two.
#define yysymbol_kind_t scriptsymbol_kind_t
}

%code requires {
#include <string_view>

namespace kvl {
class ScriptCompiler;
}
}

%code {
#include <type_traits>

#include "frontend/POUTX_scan.h"
#include "frontend/ScriptCompiler.h"

using namespace kvl;

// The stack of values is moved bytewise.
static_assert(std::is_trivially_copyable_v<SCRIPTSTYPE>);

// 150 entries can be pushed, the 151st is refused. The stack holds its start state and a spare entry besides, and must not
// grow beyond its first size. No source comes near it: all lists are left recursive and nothing nests, so that the states
// form no circle, and the longest way through them pushes 14 entries.
#define YYINITDEPTH 152
#define YYMAXDEPTH 152

static int scriptlex(SCRIPTSTYPE* value, ScriptCompiler& compiler);
static void scripterror(ScriptCompiler& compiler, const char* text);
}

%define api.pure full
%define api.prefix {script}
%define api.token.prefix {SCRIPT_}
%define api.value.type {std::string_view}
%define parse.error custom
// A state reduces by default before it looks at the next token. The command with its closing dollar depends on it: the text
// of a comment block is read behind that dollar, past the parser. It also means that what a production finds wrong is told
// before the syntax error behind it.
%define lr.default-reduction most
%param {kvl::ScriptCompiler& compiler}
%expect 0

%token IDENTIFIER NAME_PART GAP_PART
%token INTEGER FLOAT BOOLEAN LITERAL
%token TEXT
%token LBRACKET RBRACKET TYPE_MARK
%token ASSIGN ADD_ASSIGN SUB_ASSIGN MUL_ASSIGN DIV_ASSIGN MOD_ASSIGN
%token EQUAL NOT_EQUAL LESS GREATER LESS_EQUAL GREATER_EQUAL
%token NEWLINE_MARK CONTINUE_MARK
%token KVL VERSION BEGIN END SCRIPT PATTERN ALL IF CHANGE EXTEND SEPARATOR COMMENT
// Reserved words without a production.
%token SET GET

%%

// Sources

source: item_list;

item_list: item_list item
         | item
         ;

item: command
    | TEXT                          { compiler.AppendText($1); }
    ;

command: '$' command_body '$'       { if (!compiler.EndCommand()) YYABORT; };

command_body: BEGIN block_head      { compiler.SetBegin(); }
            | END block_head        { compiler.SetEnd(); }
            | single_command
            ;

// Block heads

block_head: version_head                                     { compiler.SetKind(cmd_kind_begin_end_verb_constant_string); }
          | verbatim_head                                    { compiler.SetKind(cmd_kind_begin_end_verb_stream); }
          | macro_head                                       { compiler.SetKind(cmd_kind_begin_end_declare_macro); }
          | ALL first_list                                   { compiler.EndSingleLoop(); }
          | ALL first_list list_separator second_list        { compiler.EndDoubleLoop(); }
          | IF comparison                                    { compiler.EndComparisonBlock(); }
          | IF line_condition                                { compiler.EndConditionBlock(cmd_with_condition_operand_placeholder_normal); }
          | IF name_condition                                { compiler.EndConditionBlock(cmd_with_condition_operand_identifier); }
          | IF macro_condition                               { compiler.EndConditionBlock(cmd_with_condition_operand_macro); }
          ;

version_head: KVL VERSION ASSIGN LITERAL                     { compiler.EndVersion($4); };

verbatim_head: SEPARATOR                                     { compiler.EndVerbatimHead(cmd_separator, $1); }
             | COMMENT                                       { compiler.EndVerbatimHead(cmd_comment, $1); }
             ;

macro_head: SCRIPT IDENTIFIER '(' parameter_list ')'         { compiler.EndScriptHead($2); }
          | PATTERN IDENTIFIER '(' parameter_list ')'        { compiler.EndPatternHead($2); }
          ;

parameter_list: parameter_list ',' parameter
              | parameter
              | %empty
              ;

parameter: parameter_mark IDENTIFIER TYPE_MARK parameter_type
                                                             { if (!compiler.EndParameter($2)) YYABORT; };

parameter_mark: '#'                                          { compiler.SetParameterMark("#"); }
              | '&'                                          { compiler.SetParameterMark("&"); }
              | %empty                                       { compiler.SetParameterMark(""); }
              ;

parameter_type: full_name LBRACKET RBRACKET                  { compiler.SetParameterType(true); }
              | full_name                                    { compiler.SetParameterType(false); }
              ;

// Loops

first_list: name                                             { compiler.SetFirstList(); };

second_list: name                                            { compiler.SetSecondList(); };

list_separator: CHANGE                                       { compiler.SetLoopMode(cmd_loop_mode_double_change, $1); }
              | EXTEND                                       { compiler.SetLoopMode(cmd_loop_mode_double_extend, $1); }
              | ','                                          { compiler.SetLoopMode(cmd_loop_mode_double_read, $1); }
              ;

// Conditions

comparison: left_operand comparison_operator right_operand   { compiler.EndComparison(); };

comparison_operator: EQUAL         { compiler.SetComparison(cmd_operator_equal, condition_negation_no, $1); }
                   | NOT_EQUAL     { compiler.SetComparison(cmd_operator_equal, cmd_condition_negation_yes, $1); }
                   | LESS          { compiler.SetComparison(cmd_operator_lt, condition_negation_no, $1); }
                   | LESS_EQUAL    { compiler.SetComparison(cmd_operator_lte, condition_negation_no, $1); }
                   | GREATER       { compiler.SetComparison(cmd_operator_gt, condition_negation_no, $1); }
                   | GREATER_EQUAL { compiler.SetComparison(cmd_operator_gte, condition_negation_no, $1); }
                   ;

line_condition: line_mark          { compiler.EndLineCondition(condition_negation_no); }
              | '!' line_mark      { compiler.EndLineCondition(cmd_condition_negation_yes); }
              ;

name_condition: name               { compiler.EndNameCondition(condition_negation_no); }
              | '!' name           { compiler.EndNameCondition(cmd_condition_negation_yes); }
              ;

macro_condition: macro_call        { compiler.EndMacroCondition(condition_negation_no); }
               | '!' macro_call    { compiler.EndMacroCondition(cmd_condition_negation_yes); }
               ;

// Single commands

single_command: line_mark          { compiler.SetKind(cmd_kind_placeholder_normal); }
              | statement
              | literal_macro      { compiler.SetKind(cmd_kind_macro); }
              | macro_call         { compiler.EndCallStatement(); }
              ;

statement: placeholder
         | left_operand TYPE_MARK type_reference
                                   { if (!compiler.EndDeclaration()) YYABORT; }
         | left_operand TYPE_MARK type_reference assign_operator right_operand
                                   { if (!compiler.EndDeclarationWithValue()) YYABORT; }
         | left_operand TYPE_MARK type_reference assign_operator cast right_operand
                                   { if (!compiler.EndDeclarationWithCast()) YYABORT; }
         | '#' left_operand TYPE_MARK type_reference ASSIGN init_value
                                   { if (!compiler.EndConstant()) YYABORT; }
         | left_operand assign_operator right_operand
                                   { compiler.EndAssignment(); }
         | left_operand assign_operator cast right_operand
                                   { compiler.EndAssignmentWithCast(); }
         ;

placeholder: name                  { compiler.EndPlaceholder(); };

line_mark: NEWLINE_MARK            { compiler.SetLineMark(cmd_newline, $1); }
         | CONTINUE_MARK           { compiler.SetLineMark(cmd_continueline, $1); }
         ;

literal_macro: LITERAL             { compiler.EndLiteralMacro($1); };

// Types

init_value: right_operand;

type_reference: type_spec          { compiler.KeepTypeName(); };

type_spec: type_name list_suffix;

type_name: full_name               { compiler.SetTypeName(); };

list_suffix: LBRACKET list_size RBRACKET
                                   { compiler.SetListMark(true); }
           | %empty                { compiler.SetListMark(false); }
           ;

list_size: INTEGER                 { compiler.SetListSize($1); }
         | list_size_name
         | %empty                  { compiler.SetListSize(""); }
         ;

list_size_name: full_name          { compiler.SetListSizeName(); };

cast: '(' TYPE_MARK type_spec ')'  { compiler.EndCast(); };

// Operands

assign_operator: ASSIGN            { compiler.SetOperator(cmd_operator_assign, $1); }
               | ADD_ASSIGN        { compiler.SetOperator(cmd_operator_plus, $1); }
               | SUB_ASSIGN        { compiler.SetOperator(cmd_operator_minus, $1); }
               | DIV_ASSIGN        { compiler.SetOperator(cmd_operator_divide, $1); }
               | MUL_ASSIGN        { compiler.SetOperator(cmd_operator_multiply, $1); }
               | MOD_ASSIGN        { compiler.SetOperator(cmd_operator_modulo, $1); }
               ;

left_operand: name                 { compiler.SetLeftName(false); }
            | TYPE_MARK full_name  { compiler.SetLeftName(true); }
            | macro_as_left
            ;

macro_as_left: macro_call          { compiler.SetLeftMacro(); };

right_operand: name                { compiler.SetRightName(); }
             | INTEGER             { compiler.SetRightConstant(kConstantInteger, $1); }
             | FLOAT               { compiler.SetRightConstant(kConstantFloat, $1); }
             | BOOLEAN             { compiler.SetRightConstant(kConstantBool, $1); }
             | LITERAL             { compiler.SetRightLiteral($1); }
             | macro_as_right
             ;

macro_as_right: macro_call         { compiler.SetRightMacro(); };

// Macro calls

macro_call: macro_name '(' argument_list ')'
                                   { compiler.EndCall(); };

macro_name: name                   { compiler.SetMacroName(); };

argument_list: argument_list ',' argument
             | argument
             | %empty
             ;

argument: name                     { compiler.AddNameArgument(false); }
        | name LBRACKET RBRACKET   { compiler.AddNameArgument(true); }
        | INTEGER                  { compiler.AddConstantArgument(kConstantInteger, $1); }
        | FLOAT                    { compiler.AddConstantArgument(kConstantFloat, $1); }
        | BOOLEAN                  { compiler.AddConstantArgument(kConstantBool, $1); }
        | LITERAL                  { compiler.AddLiteralArgument($1); }
        ;

// Names

name: full_name
    | short_name
    ;

full_name: full_name_parts;

full_name_parts: IDENTIFIER                     { compiler.StartLabel($1); }
               | full_name_parts NAME_PART      { compiler.ExtendLabel($2); }
               | full_name_parts GAP_PART       { compiler.ExtendLabel($2); }
               ;

short_name: short_name_parts                    { if (!compiler.EndShortName()) YYABORT; };

short_name_parts: NAME_PART                     { compiler.ExtendLabel($1); }
                | GAP_PART                      { compiler.ExtendLabel($1); }
                | short_name_parts NAME_PART    { compiler.ExtendLabel($2); }
                | short_name_parts GAP_PART     { compiler.ExtendLabel($2); }
                ;

%%

static int scriptlex(SCRIPTSTYPE* value, ScriptCompiler& compiler) {
    const int token = compiler.NextToken(*value);
    return token == PoutScanX::kFailed ? SCRIPT_SCRIPTerror : token;
}

static int yyreport_syntax_error(const yypcontext_t*, ScriptCompiler& compiler) {
    compiler.Report("Syntax error");
    return 0;
}

// Syntax errors go another way, so that this is told of a full stack only.
static void scripterror(ScriptCompiler& compiler, const char*) { compiler.Report("Parser stack overflow"); }

namespace kvl {

std::string_view ScriptTokenName(int token) { return yysymbol_name(YYTRANSLATE(token)); }

}  // namespace kvl
