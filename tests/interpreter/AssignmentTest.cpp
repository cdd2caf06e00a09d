// Assignments: operators on texts, casts, literals, calls as operands, lists and instances.
#include "ScriptRun.h"

namespace kvl {
namespace {

constexpr const char* kPerson = "::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER HOME ::SEQUENCE{ CITY ::IDENTIFIER } }";
constexpr const char* kPeople =
    "::PEOPLE = ::SEQUENCE{ MAN ::LIST{ NAME ::IDENTIFIER ':' ::OPTION{ PET ::LIST{ PNAME ::IDENTIFIER } } ';' } }";

class AssignmentRows : public testing::TestWithParam<ScriptRow> {
protected:
    static void Prepare(ScriptRun& run) {
        run.AddType("PERSON", kPerson);
        run.AddType("PEOPLE", kPeople);
        run.AddPattern("P", "#A::STREAM", "<$A$>");
        run.AddScript("R", "", "");
    }
};

TEST_P(AssignmentRows, Runs) {
    ScriptRun run;
    Prepare(run);
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kTextRows[] = {
    {"Assign", "$A ::STREAM$$A = \"x\"$$A$", "x"},
    {"Append", "$A ::STREAM = \"x\"$$A += \"y\"$$A += A$$A$", "xyxy"},
    {"Integers", "$I ::INTEGER = 7$$I /= 2$$I$;$I *= 5$$I -= 1$$I %= 4$$I$", "32"},
    {"Floats", "$F ::FLOAT = 1.5$$F += 1$$F$", "2.5"},
    {"FirstValueByAnotherOperator", "$I ::INTEGER += 5$$I$", "5"},
    {"UndeclaredLeft", "\n$A = 1$\n$A ::INTEGER$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"UndeclaredRight", "$A ::INTEGER$\n$A = B$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"StringTakesNoBlank", "$A ::STRING = \"a b\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"IntegerTakesNoText", "$A ::INTEGER = \"5\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"BooleanHasNoPlus", "$A ::BOOL$\n$A += TRUE$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"DivisionByZeroIsToldOnce", "$A ::INTEGER = 1$\n$A /= 0$", "", "ERR_EXEC_SCRIPT_VAR_1 4"},
    {"StreamOfACategory", "$Q ::PERSON$$S ::STREAM = \"a b\"$$Q = S$$T ::STREAM = Q:HOME$$T$", "b"},
    {"MacroAsTarget", "$P(R) = \"x\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"ScriptGivesNoText", "$S ::STREAM = \"x\"$$S = R()$$S$", ""},
    {"PatternGivesItsText", "$A ::STREAM = \"v\"$$S ::STREAM = P(A)$$S += P(\"w\")$$S$", "<v><w>"},
    {"PatternMustFitTheTarget", "$S ::INTEGER = P(\"w\")$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"BuiltInGivesItsText", "$S ::STREAM = KVL:STREAM:UPPERCASE_STREAM(\"a\")$$S$", "cmd_stream_uppercasea"},
    {"FactGivesItsText", "$S ::STREAM = KVL:GENERATION:GUID()$$S$", "cmd_generation_guid"},
    {"MethodGivesItsText", "$D ::KVL:DIRECTORY$$S ::STREAM = D:FILE(\"a\")$$S$", "a"},
    {"UnknownMacro", "$S ::STREAM = X()$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
    {"ATypeHasNoNamespace", "$S ::STREAM = X:PERSON$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
    {"UnknownArgument", "$S ::STREAM = P(X)$", "", "ERR_DECL_SCRIPT_VAR_5 3"},
    {"DirectoryTakesNoText", "$D ::KVL:DIRECTORY$\n$D = \"x\"$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"DeclaredThingsTakeNoText", "$P = \"x\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
};
INSTANTIATE_TEST_SUITE_P(Text, AssignmentRows, testing::ValuesIn(kTextRows), RowName);

constexpr ScriptRow kCastRows[] = {
    {"Fits", "$A ::FLOAT = (::FLOAT) 1.5$$A$", "1.5"},
    {"ConvertsNothing", "$A ::INTEGER = (::INTEGER) 1.5$$A$", "1"},
    {"Differs", "$A ::INTEGER = (::STRING) \"5\"$", "", "ERR_DECL_SCRIPT_VAR_8 3"},
    {"LongForm", "$Q ::PERSON$$S ::STREAM = \"a b\"$$Q = (::KVL:PERSON) S$$:CITY$", "b"},
    {"OnAMethod", "$D ::KVL:DIRECTORY$$D:FILE(\"a\") = (::KVL:FILE) P(\"x\")$", ""},
    {"OnAnotherMethodType", "$D ::KVL:DIRECTORY$\n$D:FILE(\"a\") = (::STRING) P(\"x\")$", "",
     "ERR_DECL_SCRIPT_VAR_8 4"},
};
INSTANTIATE_TEST_SUITE_P(Cast, AssignmentRows, testing::ValuesIn(kCastRows), RowName);

constexpr ScriptRow kConstantRows[] = {
    {"HasItsValue", "$#A ::INTEGER = 5$$A$", "5"},
    {"HasAComputedValue", "$V ::STREAM = \"v\"$$#A ::STREAM = \"<$V$>\"$$A$", "<v>"},
    {"TakesNoAssignment", "$#A ::INTEGER = 5$\n$A = 6$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"TakesNoOperator", "$#A ::INTEGER = 5$\n$A += 6$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"ValueMustFit", "$#A ::INTEGER = \"x\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
};
INSTANTIATE_TEST_SUITE_P(Constant, AssignmentRows, testing::ValuesIn(kConstantRows), RowName);

constexpr ScriptRow kLiteralRows[] = {
    {"Placeholder", "$A ::STRING = \"v\"$$S ::STREAM = \"a $A$ b\"$$S$", "a v b"},
    {"Call", "$S ::STREAM = \"a $P(\"\"w\"\")$ b\"$$S$", "a <w> b"},
    {"BuiltIn", "$S ::STREAM = \"$KVL:GENERATION:GUID()$\"$$S$", "cmd_generation_guid"},
    {"LineMarks", "$S ::STREAM = \"a$\\n$b$/$c\"$$S$", "a\r\nbc"},
    {"Escapes", "$S ::STREAM = \"\\ta\\\\\\q\"$$S$", "\ta\\\\q"},
    {"EscapesOfAValue", "$A ::STREAM = \"\\\\\\\\n\"$$S ::STREAM = \"$A$\"$$S$", "\\n"},
    {"Quotes", "$S ::STREAM = \"a\"\"b\"$$S$", "a\"b"},
    {"Empty", "$S ::STREAM = \"x\"$$S = \"\"$$S$", ""},
    {"UnknownVariable", "$S ::STREAM$\n$S = \"$X$\"$", "", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"NotElementary", "$D ::KVL:DIRECTORY$\n$S ::STREAM = \"$D$\"$", "", "ERR_DECL_SCRIPT_LIT_3 4"},
    {"UnknownMacro", "$S ::STREAM = \"$X()$\"$", "", "ERR_DECL_SCRIPT_MACRO_1 3"},
    {"Script", "$S ::STREAM = \"$R()$\"$", "", "ERR_DECL_SCRIPT_LIT_4 3"},
};
INSTANTIATE_TEST_SUITE_P(Literal, AssignmentRows, testing::ValuesIn(kLiteralRows), RowName);

constexpr ScriptRow kListRows[] = {
    {"CellOfTheCurrentRecord",
     "$L ::INTEGER[3]$$N ::INTEGER$$BEGIN ALL L$$N += 1$$L = N$$END ALL L$$BEGIN ALL L$$L$$END ALL L$", "123"},
    {"CellByOperator", "$L ::INTEGER[2]$$BEGIN ALL L$$L += 4$$END ALL L$$BEGIN ALL L$$L$$END ALL L$", "44"},
    {"OutsideALoopARecordIsMade", "$L ::BOOL[]$$L = TRUE$$L = FALSE$$BEGIN ALL L$$L$ $END ALL L$", "TRUEFALSE"},
    {"WholeList", "$A ::INTEGER[2]$$B ::INTEGER[3]$$BEGIN ALL A$$A = 7$$END ALL A$$B = A$$BEGIN ALL B$$B$$END ALL B$",
     "77"},
    {"RecordToRecord",
     "$A ::INTEGER[2]$$B ::INTEGER[2]$$N ::INTEGER$$BEGIN ALL A$$N += 1$$A = N$$END ALL A$"
     "$BEGIN ALL B, A$$B = A$$END ALL B, A$$BEGIN ALL B$$B$$END ALL B$",
     "12"},
    {"OtherShape", "$A ::PERSON[1]$$B ::INTEGER[2]$\n$A = B$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"ListTakesAnInstance",
     "$S ::STREAM = \"ada york\"$$Q ::PERSON = S$$L ::PERSON[]$$L = Q$$BEGIN ALL L$$L:NAME$$END ALL L$", "ada"},
    {"InstanceTakesARecord", "$Q ::PERSON$$L ::PERSON[1]$$BEGIN ALL L$$L:NAME = \"ada\"$$Q = L$$END ALL L$$Q:NAME$",
     "ada"},
    {"InstanceTakesAnInstance",
     "$S ::STREAM = \"A:cat dog;B:;\"$$X ::PEOPLE = S$$Y ::PEOPLE$$Y = X$"
     "$BEGIN ALL Y:MAN$$Y:MAN:NAME$$BEGIN ALL Y:MAN:PET$$Y:MAN:PET:PNAME$$END ALL Y:MAN:PET$$END ALL Y:MAN$",
     "AcatdogB"},
    {"CellOutsideItsLoopIsNoValue", "$L ::INTEGER[1]$$I ::INTEGER$\n$I = L$", "", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"ExtendAppendsWhatIsWritten",
     "$A ::INTEGER[3]$$B ::INTEGER[]$$N ::INTEGER$$BEGIN ALL A EXTEND B$$N += 1$$BEGIN IF N != 2$$B = N$"
     "$END IF N != 2$$END ALL A EXTEND B$$BEGIN ALL B$$B$$END ALL B$",
     "13"},
};
INSTANTIATE_TEST_SUITE_P(List, AssignmentRows, testing::ValuesIn(kListRows), RowName);

// What the built-in forms get to see.
struct AskedRow {
    const char* name;
    const char* command;
    const char* asked;
};
class AssignmentAsked : public testing::TestWithParam<AskedRow> {};

TEST_P(AssignmentAsked, TellsItsOperands) {
    ScriptRun run;
    run.AddPattern("P", "#A::STREAM", "<$A$>");
    run.Execute(
        std::string("$D ::KVL:DIRECTORY$$S ::STREAM = \"s\"$$L ::STREAM[1]$$I ::INTEGER$$BEGIN ALL L$$L = \"c\"$") +
        GetParam().command + "$END ALL L$");
    EXPECT_EQ(run.builtIns.asked, GetParam().asked) << run.outside.console.output;
}

constexpr AskedRow kAskedRows[] = {
    {"FileFromStream", "$D:FILE(\"a\") = S$", "left=31,0,a right=1,0, "},
    {"FileFromPattern", "$D:FILE(\"a\") = (::KVL:FILE) P(\"x\")$", "left=31,0,a right=28,0,<x> KVL:FILE"},
    {"FileFromFile", "$D:FILE(\"a\") = D:FILE(\"b\")$", "left=31,0,a right=31,0,b "},
    {"FileFromCell", "$D:FILE(\"a\") = L$", "left=31,0,a right=29,1,c "},
    {"CellFromLiteral", "$L = \"x\\ty\"$", "left=29,1, right=9,0,x\ty "},
    {"StreamFromFile", "$S = D:FILE(\"b\")$", "left=1,0, right=31,0,b "},
    {"IntegerFromLength", "$I = KVL:STREAM:LENGTH_STREAM(S)$", "left=3,0, right=31,0,cmd_stream_lengths "},
};
INSTANTIATE_TEST_SUITE_P(Rows, AssignmentAsked, testing::ValuesIn(kAskedRows), RowName);

TEST(AssignmentNote, IsShownForCallsAndLoads) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    run.AddPattern("P", "", "a b");
    EXPECT_TRUE(run.Execute("$S ::STREAM = P()$$T ::STREAM = S$$Q ::PERSON = S$"));
    const std::string& green = run.outside.console.TextIn(10);
    EXPECT_NE(green.find("S::STREAM = P()"), std::string::npos) << green;
    EXPECT_EQ(green.find("T::STREAM = S"), std::string::npos) << green;
    EXPECT_NE(green.find("Q::PERSON = S"), std::string::npos) << green;
}

TEST(AssignmentCall, RunsOnce) {
    ScriptRun run;
    EXPECT_TRUE(run.Execute("$S ::STREAM = KVL:STREAM:LEFT_STREAM(\"$KVL:GENERATION:GUID()$\", 1)$$S$"));
    EXPECT_EQ(run.builtIns.callCount, 2);
    EXPECT_EQ(run.output, "cmd_stream_leftcmd_generation_guid1");
}

TEST(AssignmentErrors, OfAnEarlierCommandFailTheNextOperator) {
    ScriptRun run;
    Process().errorCount = 1;
    Process().errorCountAtFirstCommand = 1;
    EXPECT_TRUE(run.Execute("$A ::INTEGER = 1$"));
    ScriptRun again;
    Process().errorCount = 1;
    EXPECT_FALSE(again.Execute("$A ::INTEGER = 1$"));
    EXPECT_EQ(again.faults, "");
}

TEST(AssignmentCast, NamesTheCastAndTheTarget) {
    ScriptRun run;
    EXPECT_FALSE(run.Execute("$A ::INTEGER = (::STRING) \"5\"$"));
    EXPECT_NE(run.outside.console.output.find("Illegal cast from type STRING to type INTEGER"), std::string::npos);
}

}  // namespace
}  // namespace kvl
