// Declaring variables, finding them by their names, and reading them.
#include "ScriptRun.h"

namespace kvl {
namespace {

constexpr const char* kPerson = "::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER HOME ::SEQUENCE{ CITY ::IDENTIFIER } }";
constexpr const char* kPeople =
    "::PEOPLE = ::SEQUENCE{ MAN ::LIST{ NAME ::IDENTIFIER ':' ::OPTION{ PET ::LIST{ PNAME ::IDENTIFIER } } ';' } }";
constexpr const char* kWords = "::WORDS = ::LIST{ WORD ::IDENTIFIER }";

class Variables : public testing::TestWithParam<ScriptRow> {};

TEST_P(Variables, Runs) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    run.AddType("PEOPLE", kPeople);
    run.AddType("WORDS", kWords);
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kVariableRows[] = {
    {"NumbersStartAsZero", "$I ::INTEGER$$F ::FLOAT$$I$ $F$", "00"},
    {"BooleansStartAsFalse", "$B ::BOOL$$B$", "FALSE"},
    {"TextsStartEmpty", "$S ::STRING$$T ::STREAM$$D ::IDENTIFIER$$W ::WHITESPACE$$S$$T$$D$$W$", ""},
    {"SecondDeclaration", "$A ::INTEGER$\n$A ::INTEGER$", "", "ERR_DECL_SCRIPT_VAR_2 4"},
    {"SecondDeclarationOfAnotherType", "$A ::INTEGER$\n\n$A ::STRING$", "", "ERR_DECL_SCRIPT_VAR_2 5"},
    {"SecondDeclarationOfAList", "$A ::INTEGER$\n$A ::STRING[]$", "", "ERR_DECL_SCRIPT_VAR_2 4"},
    {"SecondDeclarationOfAnInstance", "$A ::PERSON$\n$A ::PERSON$", "", "ERR_DECL_SCRIPT_VAR_2 4"},
    {"DeclarationInALoop", "$L ::STRING[2]$\n$BEGIN ALL L$\n$A ::STRING$\n$END ALL L$", "", "ERR_DECL_SCRIPT_VAR_2 5"},
    {"UnknownType", "$A ::NOBODY$", "", "ERR_DECL_SCRIPT_VAR_3 3"},
    {"UnknownListType", "$A ::NOBODY[]$", "", "ERR_DECL_SCRIPT_VAR_3 3"},
    {"AVariableIsNoType", "$T ::STRING$\n$A ::T$", "", "ERR_DECL_SCRIPT_VAR_3 4"},
    {"ShortLabel", "$:A ::STRING$", "", "ERR_EXEC_ENVIRON_FATAL_1 3"},
    {"ShortListLabel", "$:A ::STRING[]$", "", "ERR_EXEC_ENVIRON_FATAL_1 3"},
    {"NamespacesAreLabels", "$A:X ::STRING = \"1\"$$A:Y ::STRING = \"2\"$$A:X$$A:Y$", "12"},
    {"FoundByTheEnd", "$A:NAME ::STRING = \"1\"$$ANAME ::STRING = \"2\"$$:NAME$", "1"},
    {"FoundAcrossAGap", "$TOP:A:NAME ::STRING = \"1\"$$NAME:TOP ::STRING = \"2\"$$TOP:~:NAME$", "1"},
    {"AmbiguousEnd", "$A:NAME ::STRING$$B:NAME ::STRING$\n$:NAME$", "", "ERR_DECL_SCRIPT_VAR_7 4"},
    {"NotFound", "\n$X$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"AnEntityHasNoText", "$PERSON$", ""},
    {"ListOfSize", "$L ::STRING[3]$$N ::INTEGER$$BEGIN ALL L$$N += 1$$END ALL L$$N$", "3"},
    {"ListOfNamedSize", "$N ::INTEGER = 2$$L ::INTEGER[N]$$BEGIN ALL L$$L$;$END ALL L$", "00"},
    {"ListOfBooleans", "$L ::BOOL[2]$$BEGIN ALL L$$L$$END ALL L$", "FALSEFALSE"},
    {"ListOfStreams", "$L ::STREAM[1]$$BEGIN ALL L$$L = \"a b\"$$L$$END ALL L$", "a b"},
    {"ListOfNoSize", "$L ::STRING[]$$BEGIN ALL L$x$END ALL L$", ""},
    {"SizeIsNoInteger", "$N ::STRING$\n$L ::STRING[N]$", "", "ERR_DECL_SCRIPT_VAR_14 4"},
    {"SizeIsUnknown", "$L ::STRING[N]$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
    {"ListOfADeclaredType",
     "$L ::PERSON[2]$$BEGIN ALL L$$L:NAME = \"x\"$$L:HOME:CITY = \"y\"$$L:NAME$$:CITY$$END ALL L$", "xyxy"},
    {"ListOfAListType", "$L ::WORDS[]$", "", "ERR_EXEC_SCRIPT_MACRO_9 3"},
    {"InstanceIsEmpty", "$P ::PERSON$$P$$P:NAME$$P:HOME:CITY$", ""},
    {"InstanceElement", "$P ::PERSON$$P:NAME = \"Ada\"$$P:NAME$$:CITY$", "Ada"},
    {"ListOutsideItsLoop", "$L ::STRING[1]$\n$L$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"ColumnOutsideItsLoop", "$L ::PERSON[1]$\n$L:NAME$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"InstanceOfAListOutsideItsLoop", "$W ::WORDS$$W$", ""},
    {"ListOfAnInstance", "$P ::PEOPLE$$P:MAN$", ""},
    {"NestedListOutsideTheLoop", "$P ::PEOPLE$\n$P:MAN:PET$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"NestedListInTheLoop",
     "$S ::STREAM = \"A:cat dog;B:;\"$$P ::PEOPLE = S$$BEGIN ALL P:MAN$$P:MAN:NAME$$P:MAN:PET$$END ALL P:MAN$", "AB"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Variables, testing::ValuesIn(kVariableRows), RowName);

TEST(VariablesMessage, TheSecondDeclarationNamesTheFirstLine) {
    ScriptRun run;
    EXPECT_FALSE(run.Execute("\n$A ::INTEGER$\n$A ::INTEGER$"));
    EXPECT_NE(run.outside.console.output.find("Previous declaration in line 4\n"), std::string::npos);
}

TEST(VariablesMessage, TheAmbiguityNamesTwoLabels) {
    ScriptRun run;
    EXPECT_FALSE(run.Execute("$B:N ::STRING$$A:N ::STRING$$C:N ::STRING$$:N$"));
    EXPECT_NE(run.outside.console.output.find("Variable name 1: A:N\nVariable name 2: B:N\n"), std::string::npos);
}

class MacroVariables : public testing::TestWithParam<ScriptRow> {};

// In a script that is called from the main script.
TEST_P(MacroVariables, Runs) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    run.AddScript("S", "&OUT::STREAM", GetParam().body);
    run.AddPattern("P", "", "p");
    EXPECT_EQ(run.Execute("$OUT ::STREAM$$GLOBAL ::STREAM = \"g\"$$S(OUT)$$OUT$"),
              std::string_view(GetParam().faults).empty())
        << run.outside.console.output;
    EXPECT_EQ(run.output, GetParam().output);
    EXPECT_EQ(run.faults, GetParam().faults);
}

constexpr ScriptRow kMacroRows[] = {
    {"BuiltInTypeBelongsToTheMainScript", "$D ::KVL:DIRECTORY$", "", "ERR_DECL_SCRIPT_VAR_15 3"},
    {"BuiltInTypeBelowAName", "$OUT:D ::KVL:DIRECTORY$$OUT = \"k\"$", "k"},
    {"DeclaredTypesAreGlobal", "$IN ::PERSON$$IN:NAME = \"n\"$$OUT = IN:NAME$", "n"},
    {"VariablesAreNot", "$OUT = GLOBAL$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
    {"PatternsAreGlobal", "$OUT = P()$", "p"},
    {"BuiltInsAreGlobal", "$OUT = KVL:GENERATION:GUID()$", "cmd_generation_guid"},
};
INSTANTIATE_TEST_SUITE_P(Rows, MacroVariables, testing::ValuesIn(kMacroRows), RowName);

}  // namespace
}  // namespace kvl
