// Conditions of blocks: names, calls and comparisons.
#include "ScriptRun.h"

namespace kvl {
namespace {

constexpr const char* kPeople =
    "::PEOPLE = ::SEQUENCE{ MAN ::LIST{ NAME ::IDENTIFIER ':' ::OPTION{ PET ::LIST{ PNAME ::IDENTIFIER } } ';' } }";

// Declares what the conditions speak of; Y is written where the condition holds.
constexpr const char* kDeclarations =
    "$Y ::STREAM = \"yes\"$$ONE ::INTEGER = 1$$ZERO ::INTEGER = 0$$TRUTH ::BOOL = TRUE$$LIE ::BOOL$"
    "$EMPTY ::STREAM$$TEXT ::STREAM = \"text\"$$NONE ::STRING[]$$SOME ::STRING[2]$$D ::KVL:DIRECTORY$"
    "$S ::STREAM = \"A:cat;B:;\"$$PP ::PEOPLE = S$\n";

struct ConditionRow {
    const char* name;
    const char* condition;
    bool holds;
};

class Conditions : public testing::TestWithParam<ConditionRow> {
protected:
    static void Prepare(ScriptRun& run) {
        run.AddType("PEOPLE", kPeople);
        run.AddPattern("P", "#A::STREAM", "$A$");
        run.AddScript("R", "", "");
        run.outside.memory.Put("/work/there.txt", "x");
    }
    static std::string Block(const std::string& condition) {
        return "$BEGIN IF " + condition + "$$Y$$END IF " + condition + "$";
    }
};

TEST_P(Conditions, Decide) {
    ScriptRun run;
    Prepare(run);
    EXPECT_TRUE(run.Execute(kDeclarations + Block(GetParam().condition))) << run.outside.console.output;
    EXPECT_EQ(run.output, GetParam().holds ? "yes" : "");
}

constexpr ConditionRow kNameRows[] = {
    {"TextOfZeroIsNotEmpty", "ZERO", true}, {"EmptyText", "EMPTY", false},         {"NegatedEmptyText", "!EMPTY", true},
    {"BooleanFalse", "LIE", false},         {"NegatedBooleanFalse", "!LIE", true}, {"BooleanTrue", "TRUTH", true},
    {"EmptyList", "NONE", false},           {"NegatedEmptyList", "!NONE", true},   {"List", "SOME", true},
    {"ListOfAnInstance", "PP:MAN", true},   {"ShortName", ":MAN", true},
};
constexpr ConditionRow kComparisonRows[] = {
    {"Equal", "ONE == 1", true},
    {"NotEqual", "ONE != 1", false},
    {"NotEqualOther", "ONE != 2", true},
    {"Less", "ZERO < ONE", true},
    {"LessEqual", "ONE <= 1", true},
    {"Greater", "ONE > 1", false},
    {"GreaterEqual", "ONE >= 1", true},
    {"Text", "TEXT == \"text\"", true},
    {"TextOrder", "TEXT < \"texu\"", true},
    {"LiteralAsItStands", "TEXT == \"$TEXT$\"", false},
    {"BooleanOfAConstantZero", "TRUTH == 0", true},
    {"CallOnTheLeft", "P(\"a\") == \"a\"", true},
    {"CallOnTheRight", "TEXT == P(TEXT)", true},
    {"CallsOnBothSides", "P(\"a\") == P(\"b\")", false},
    {"BuiltIn", "KVL:GENERATION:GUID() == \"cmd_generation_guid\"", true},
};
constexpr ConditionRow kCallRows[] = {
    {"Pattern", "P(\"x\")", true},
    {"EmptyPattern", "P(\"\")", false},
    {"NegatedPattern", "!P(\"\")", true},
    {"ExistingFile", "D:FILE(\"/work/there.txt\")", true},
    {"MissingFile", "D:FILE(\"/work/gone.txt\")", false},
    {"NegatedMissingFile", "!D:FILE(\"/work/gone.txt\")", true},
    {"OneOfSeveralFiles", "D:FILE(\"/work/gone.txt;/work/there.txt\")", true},
};
INSTANTIATE_TEST_SUITE_P(Name, Conditions, testing::ValuesIn(kNameRows), RowName);
INSTANTIATE_TEST_SUITE_P(Comparison, Conditions, testing::ValuesIn(kComparisonRows), RowName);
INSTANTIATE_TEST_SUITE_P(Call, Conditions, testing::ValuesIn(kCallRows), RowName);

struct FaultRow {
    const char* name;
    const char* condition;
    const char* faults;
};
TEST(ConditionList, OfANestedListLooksAtTheCurrentRecord) {
    ScriptRun run;
    run.AddType("PEOPLE", kPeople);
    EXPECT_TRUE(
        run.Execute("$S ::STREAM = \"A:cat;B:;C:dog;\"$$P ::PEOPLE = S$"
                    "$BEGIN ALL P:MAN$$BEGIN IF P:MAN:PET$$P:MAN:NAME$$END IF P:MAN:PET$$END ALL P:MAN$"));
    EXPECT_EQ(run.output, "AC");
}

class ConditionFault : public testing::TestWithParam<FaultRow> {};

TEST_P(ConditionFault, IsReported) {
    ScriptRun run;
    run.AddType("PEOPLE", kPeople);
    run.AddScript("R", "", "");
    const std::string condition = GetParam().condition;
    EXPECT_FALSE(run.Execute("$TEXT ::STREAM$$ONE ::INTEGER$$P ::PEOPLE$\n$BEGIN IF " + condition + "$\n$END IF " +
                             condition + "$"));
    EXPECT_EQ(run.faults, GetParam().faults);
    EXPECT_EQ(Process().stoppedLine, 4);
}

constexpr FaultRow kFaultRows[] = {
    {"UnknownName", "X", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"UnknownLeft", "X == 1", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"UnknownRight", "ONE == X", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"UnknownMacro", "X()", "ERR_DECL_SCRIPT_VAR_5 4"},
    {"IntegerWithText", "ONE == \"1\"", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"ScriptHasNoText", "R() == \"\"", "ERR_DECL_SCRIPT_VAR_9 4"},
    {"NestedListWithoutItsLoop", "P:MAN:PET", "ERR_DECL_SCRIPT_LIST_5 4"},
    {"ColumnWithoutItsLoop", "P:MAN:NAME", "ERR_DECL_SCRIPT_LIST_5 4, ERR_DECL_SCRIPT_VAR_5 4"},
};
INSTANTIATE_TEST_SUITE_P(Rows, ConditionFault, testing::ValuesIn(kFaultRows), RowName);

}  // namespace
}  // namespace kvl
