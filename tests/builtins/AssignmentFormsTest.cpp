// The forms of an assignment that mean files, streams and declared things: what each does, and what is none of them.
#include "FileScript.h"

namespace kvl {
namespace {

class AssignmentForms : public testing::TestWithParam<ScriptRow> {};

TEST_P(AssignmentForms, Runs) {
    ExpectFileRow(GetParam());
}

// Macros and values that the rows work with.
#define KVL_STREAM "$S ::STREAM$"
#define KVL_PERSON "$::PERSON ::KVL:TYPE = D:FILE(\"PERSON.txt\")$"
#define KVL_WORDS "$::WORDS ::KVL:TYPE = D:FILE(\"WORDS.txt\")$"
#define KVL_PATTERN "$P() ::KVL:PATTERN = D:FILE(\"P.txt\")$"

constexpr ScriptRow kFromFile[] = {
    {"Script", KVL_STREAM "$R() ::KVL:SCRIPT = D:FILE(\"R.txt\")$$R(S)$$S$", "done"},
    {"Pattern", KVL_PATTERN "$P(\"x\")$", "<x>\r\n"},
    {"ScriptSearched", "$R() ::KVL:SCRIPT = W:FILE(\"none.txt\")$", "", "ERR_EXEC_SCRIPT_FILE_1 3"},
    {"TypeAndData", KVL_PERSON "$IN ::PERSON = D:FILE(\"data.txt\")$$IN:CITY$", "york"},
    {"TypeInNamespace",
     "$::N:PERSON ::KVL:TYPE = D:FILE(\"PERSON.txt\")$$IN ::N:PERSON = D:FILE(\"data.txt\")$$IN:NAME$", "ada"},
    {"DataAgain", KVL_PERSON "$IN ::PERSON = D:FILE(\"data.txt\")$$IN = D:FILE(\"data.txt\")$$IN:NAME$", "ada"},
    {"DataIntoTheListThatALoopChanges",
     KVL_WORDS "$IN ::WORDS = D:FILE(\"data.txt\")$$L ::STRING[2]$\n"
               "$BEGIN ALL L CHANGE IN$\n$IN = D:FILE(\"a.txt\")$$END ALL L CHANGE IN$",
     "", "ERR_EXEC_SCRIPT_MACRO_9 5"},
    {"DataIntoTheListThatALoopExtends",
     KVL_WORDS "$IN ::WORDS = D:FILE(\"data.txt\")$$L ::STRING[2]$\n"
               "$BEGIN ALL L EXTEND IN$\n$IN = D:FILE(\"a.txt\")$$END ALL L EXTEND IN$",
     "", "ERR_EXEC_SCRIPT_MACRO_9 5"},
    {"DataIntoTheListOfItsOwnLoop",
     KVL_WORDS "$IN ::WORDS = D:FILE(\"data.txt\")$$BEGIN ALL IN$$IN = D:FILE(\"a.txt\")$$END ALL IN$"
               "$BEGIN ALL IN$$IN:WORD$$END ALL IN$",
     "alpha"},
    {"Stream", KVL_STREAM "$S = D:FILE(\"a.txt\")$$S$", "alpha"},
    {"StreamFromTheSecondDirectory", KVL_STREAM "$S = W:FILE(\"only.txt\")$$S$", "lonely"},
    {"StreamOfAnEmptyFile", "$S ::STREAM = \"x\"$$S = D:FILE(\"empty.txt\")$$S$", ""},
    {"BoolTrue", "$B ::BOOL = D:FILE(\"a.txt\")$$B$", "TRUE"},
    {"BoolFalse", "$B ::BOOL = TRUE$$B = D:FILE(\"none.txt\")$$B$", "FALSE"},
    {"BoolOfAnyDirectory", "$B ::BOOL = W:FILE(\"only.txt\")$$B$", "TRUE"},
    {"BoolOfNoDirectory", "$B ::BOOL = W:FILE(\"none.txt\")$$B$", "FALSE"},
    {"BoolOfAnImpossibleName", "$B ::BOOL = D:FILE(\"a?b.txt\")$$B$", "FALSE"},
    {"NoFormForAnInteger", "$N ::INTEGER = D:FILE(\"a.txt\")$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"NoFormForADirectory", "$X ::KVL:DIRECTORY = D:FILE(\"a.txt\")$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"OtherOperatorsReadNothing", "$S ::STREAM = \"x\"$$S += D:FILE(\"a.txt\")$$S$", "x/work\\a.txt"},
};
INSTANTIATE_TEST_SUITE_P(FromFile, AssignmentForms, testing::ValuesIn(kFromFile), RowName);

constexpr ScriptRow kFromMacro[] = {
    {"Length", "$S ::STREAM = \"abc\"$$N ::INTEGER = KVL:STREAM:LENGTH_STREAM(S)$$N$", "3"},
    {"LengthIntoTheCellOfALoop",
     "$S ::STREAM = \"abc\"$$L ::INTEGER[2]$$BEGIN ALL L$$L = KVL:STREAM:LENGTH_STREAM(S)$$END ALL L$", "",
     "ERR_DECL_SCRIPT_VAR_9 3"},
    {"Delete", "$S ::STREAM = \"a-b-c\"$$S = KVL:STREAM:DELETE_STREAM(S, \"-\")$$S$", "abc"},
};
INSTANTIATE_TEST_SUITE_P(FromMacro, AssignmentForms, testing::ValuesIn(kFromMacro), RowName);

constexpr ScriptRow kFromStream[] = {
    {"Script", KVL_STREAM "$S = D:FILE(\"R.txt\")$$R() ::KVL:SCRIPT = S$$R(S)$$S$", "done"},
    {"Pattern", KVL_STREAM "$S = D:FILE(\"P.txt\")$$P() ::KVL:PATTERN = S$$P(\"x\")$", "<x>\r\n"},
    {"Type",
     KVL_PERSON KVL_STREAM "$S = D:FILE(\"WORDS.txt\")$$::WORDS ::KVL:TYPE = S$$IN ::WORDS = D:FILE(\"data.txt\")$"
                           "$BEGIN ALL IN$$IN:WORD$$END ALL IN$",
     "adayork"},
    {"Data", KVL_PERSON "$S ::STREAM = \"bob rome\"$$IN ::PERSON = S$$IN:NAME$", "bob"},
    {"DataLeavesTheStream", KVL_PERSON "$S ::STREAM = \"bob rome\"$$IN ::PERSON = S$$S$", "bob rome"},
    {"CellOfALoopAsData",
     KVL_PERSON "$L ::STREAM[1]$$BEGIN ALL L$$L = \"bob rome\"$$IN ::PERSON = L$$END ALL L$$IN:CITY$", "rome"},
    {"EmptyStreamAsScript", "\n$S ::STREAM$\n$R() ::KVL:SCRIPT = S$", "", "ERR_DECL_SCRIPT_HEADER_1 5"},
    {"EmptyStreamAsType", "\n$S ::STREAM$\n$::X ::KVL:TYPE = S$", "", "ERR_DECL_SCRIPT_HEADER_1 5"},
    {"EmptyStreamAsData", KVL_WORDS KVL_STREAM "$IN ::WORDS = S$", "", "ERR_PARSE_TYPE_CAT_4 1"},
    {"StringIsNoSource", "$S ::STRING = \"R.txt\"$\n$R() ::KVL:SCRIPT = S$", "", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"LiteralIsNoSource", "$R() ::KVL:SCRIPT = \"R.txt\"$", "", "ERR_DECL_SCRIPT_VAR_9 3"},
};
INSTANTIATE_TEST_SUITE_P(FromStream, AssignmentForms, testing::ValuesIn(kFromStream), RowName);

// The rows' outputs are the cells of L.
class ListFromText : public testing::TestWithParam<ScriptRow> {};

TEST_P(ListFromText, Takes) {
    FileScript run;
    run.Execute(GetParam().body);
    EXPECT_EQ(run.faults, GetParam().faults) << run.outside.console.output;
    EXPECT_EQ(run.CellsOf("L"), GetParam().output);
}

constexpr ScriptRow kIntoList[] = {
    {"StreamOfStrings", "$S ::STREAM = \"a b c\"$$L ::STRING[]$$L = S$", "a;b;c;"},
    {"StreamOfIntegers", "$S ::STREAM = \"1 22 x\"$$L ::INTEGER[]$$L = S$", "1;22;"},
    {"StreamOfFloats", "$S ::STREAM = \"1.5 2\"$$L ::FLOAT[]$$L = S$", "1.5;2;"},
    {"StreamOfIdentifiers", "$S ::STREAM = \"x y_1\"$$L ::IDENTIFIER[]$$L = S$", "x;y_1;"},
    {"StreamOfStreams", "$S ::STREAM = \"a b\"$$L ::STREAM[]$$L = S$", "a b;"},
    {"ReplacesAllRecords", "$S ::STREAM = \"a\"$$L ::STRING[5]$$L = S$", "a;"},
    {"TextWithoutMatchLeavesTheList", "$S ::STREAM$$L ::STRING[2]$$L = S$", ";;", "ERR_PARSE_TYPE_CAT_4 1"},
    {"Literal", "$L ::STRING[]$$L = \"a b c\"$", "a;b;c;"},
    {"LiteralWithPlaceholder", "$X ::STRING = \"v\"$$L ::STRING[]$$L = \"a $X$\"$", "a;v;"},
    {"LiteralInTheLoopIsTheCell", "$L ::STRING[2]$$BEGIN ALL L$$L = \"z\"$$END ALL L$", "z;z;"},
    {"StreamInTheLoopIsTheCell", "$S ::STREAM = \"z\"$$L ::STRING[2]$$BEGIN ALL L$$L = S$$END ALL L$", "z;z;"},
    {"CellOfAnotherLoop",
     "$S ::STREAM = \"p q\"$$M ::STREAM[]$$M = S$$L ::STRING[]$"
     "$BEGIN ALL M$$L = M$$END ALL M$",
     "p;q;"},
    {"ListOfStreamsIsCopied", "$M ::STREAM[2]$$BEGIN ALL M$$M = \"p q\"$$END ALL M$$L ::STREAM[]$$L = M$", "p q;p q;"},
    {"ListOfStreamsToItself", "$L ::STREAM[1]$$BEGIN ALL L$$L = \"p q\"$$END ALL L$$L = L$", "p q;"},
    {"NoFormForBooleans", "$S ::STREAM = \"TRUE\"$$L ::BOOL[]$$L = S$", "TRUE;"},
};
INSTANTIATE_TEST_SUITE_P(Rows, ListFromText, testing::ValuesIn(kIntoList), RowName);

TEST(AssignmentFormsOfParameters, ReachTheCaller) {
    FileScript run;
    run.AddScript("READ", "&T::STREAM, #D::KVL:DIRECTORY", "$T = D:FILE(\"a.txt\")$\n");
    run.AddScript("FILL", "&M::STRING, #T::STREAM", "$M = T$\n");
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"before\"$$READ(S, D)$$L ::STRING[]$$T ::STREAM = \"x y\"$$FILL(L, T)$"))
        << run.outside.console.output;
    EXPECT_EQ(run.ValueOf("S"), "alpha");
    EXPECT_EQ(run.CellsOf("L"), "x;y;");
}

struct TargetRow {
    const char* name;
    const char* body;
    const char* path;
    const char* content;
    const char* faults = "";
};
std::string TargetName(const testing::TestParamInfo<TargetRow>& info) {
    return info.param.name;
}
class FileAsTarget : public testing::TestWithParam<TargetRow> {};

TEST_P(FileAsTarget, Takes) {
    const TargetRow& row = GetParam();
    FileScript run;
    EXPECT_EQ(run.Execute(row.body), std::string_view(row.faults).empty()) << run.outside.console.output;
    EXPECT_EQ(run.faults, row.faults);
    EXPECT_EQ(run.outside.memory.Get(row.path), row.content);
}

constexpr TargetRow kTargets[] = {
    {"Stream", "$S ::STREAM = \"x\"$$D:FILE(\"out.txt\") = S$", "out.txt", "x"},
    {"EmptyStream", KVL_STREAM "$D:FILE(\"a.txt\") = S$", "a.txt", ""},
    {"CellOfALoop", "$L ::STREAM[1]$$BEGIN ALL L$$L = \"x\"$$D:FILE(\"out.txt\") = L$$END ALL L$", "out.txt", "x"},
    {"DirectoriesOnTheWay", "$S ::STREAM = \"x\"$$D:FILE(\"p/q/out.txt\") = S$", "p/q/out.txt", "x"},
    {"FirstOfSeveralDirectories", "$S ::STREAM = \"x\"$$W:FILE(\"only.txt\") = S$", "one/only.txt", "x"},
    {"OthersOfSeveralDirectoriesStay", "$S ::STREAM = \"x\"$$W:FILE(\"only.txt\") = S$", "two/only.txt", "lonely"},
    {"Pattern", KVL_PATTERN "$D:FILE(\"out.txt\") = P(\"x\")$", "out.txt", "<x>\r\n"},
    {"PatternWithItsCast", KVL_PATTERN "$D:FILE(\"out.txt\") = (::KVL:FILE) P(\"x\")$", "out.txt", "<x>\r\n"},
    {"PatternWithAnotherCast", KVL_PATTERN "$D:FILE(\"out.txt\") = (::STRING) P(\"x\")$", "out.txt", "(none)",
     "ERR_DECL_SCRIPT_VAR_8 3"},
    {"PatternWithTheShortCast", KVL_PATTERN "$D:FILE(\"out.txt\") = (::FILE) P(\"x\")$", "out.txt", "(none)",
     "ERR_DECL_SCRIPT_VAR_8 3"},
    {"Copy", "$D:FILE(\"out.txt\") = D:FILE(\"a.txt\")$", "out.txt", "alpha"},
    {"CopyOfTheFirstThatExists", "$D:FILE(\"out.txt\") = W:FILE(\"only.txt\")$", "out.txt", "lonely"},
    {"CopyIntoTheFirstDirectory", "$W:FILE(\"out.txt\") = D:FILE(\"a.txt\")$", "one/out.txt", "alpha"},
    {"CopyOntoItself", "$D:FILE(\"a.txt\") = D:FILE(\"./a.txt\")$", "a.txt", "alpha"},
    {"CopyOfAMissingFile", "$D:FILE(\"a.txt\") = D:FILE(\"none.txt\")$", "a.txt", "alpha"},
    {"ResultOfAMacro", KVL_STREAM "$D:FILE(\"out.txt\") = KVL:STREAM:UPPERCASE_STREAM(S)$", "out.txt", "(none)",
     "ERR_DECL_SCRIPT_VAR_9 3"},
    {"Literal", "$D:FILE(\"out.txt\") = \"x\"$", "out.txt", "(none)", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"String", "$X ::STRING = \"x\"$$D:FILE(\"out.txt\") = X$", "out.txt", "(none)", "ERR_DECL_SCRIPT_VAR_9 3"},
    {"OtherOperator", "$S ::STREAM = \"x\"$$D:FILE(\"out.txt\") += S$", "out.txt", "(none)", "ERR_DECL_SCRIPT_VAR_9 3"},
};
INSTANTIATE_TEST_SUITE_P(Rows, FileAsTarget, testing::ValuesIn(kTargets), TargetName);

}  // namespace
}  // namespace kvl
