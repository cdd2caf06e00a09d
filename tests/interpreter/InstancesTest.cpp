// Instances of declared types: made, parsed, published, loaded again.
#include "ScriptRun.h"

namespace kvl {
namespace {

constexpr const char* kPerson = "::PERSON = ::SEQUENCE{ NAME ::IDENTIFIER HOME ::SEQUENCE{ CITY ::IDENTIFIER } }";
constexpr const char* kNames = "::NAMES = ::SEQUENCE{ L ::LIST{ A ::IDENTIFIER ::OPTION{ ',' } } }";
constexpr const char* kWords = "::WORDS = ::LIST{ WORD ::IDENTIFIER }";
constexpr const char* kUnnamed = "::UNNAMED = ::SEQUENCE{ ::LIST{ A ::IDENTIFIER } }";

class Instances : public testing::TestWithParam<ScriptRow> {};

TEST_P(Instances, Runs) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    run.AddType("NAMES", kNames);
    run.AddType("WORDS", kWords);
    run.AddType("UNNAMED", kUnnamed);
    run.AddScript("LOAD", "&Q::PERSON, #T::STREAM", "$Q = T$$Q:NAME$");
    ExpectRow(run, GetParam());
}

constexpr ScriptRow kInstanceRows[] = {
    {"ElementsAreVariables", "$S ::STREAM = \"ada york\"$$Q ::PERSON = S$$Q:NAME$ $Q:HOME:CITY$ $:CITY$ $Q:~:CITY$",
     "adayorkyorkyork"},
    {"RootIsTheInstance", "$S ::STREAM = \"ada york\"$$Q ::PERSON = S$$Q$", "ada york"},
    {"ListOfRecords", "$S ::STREAM = \"x, y\"$$IN ::NAMES = S$$BEGIN ALL IN:L$$IN:L:A$$END ALL IN:L$", "xy"},
    {"RootList", "$S ::STREAM = \"x y\"$$W ::WORDS = S$$BEGIN ALL W$$W:WORD$$END ALL W$", "xy"},
    {"LoadedAgain", "$S ::STREAM = \"ada york\"$$Q ::PERSON = S$$S = \"bob rome\"$$Q = S$$Q:NAME$$Q:HOME:CITY$",
     "bobrome"},
    {"LoadedAgainInItsOwnLoop",
     "$S ::STREAM = \"x, y, z\"$$T ::STREAM = \"p, q\"$$IN ::NAMES = S$"
     "$BEGIN ALL IN:L$$IN = T$$END ALL IN:L$$BEGIN ALL IN:L$$IN:L:A$$END ALL IN:L$",
     "pq"},
    {"LoadedByAMacro", "$S ::STREAM = \"ada york\"$$T ::STREAM = \"bob rome\"$$Q ::PERSON = S$$LOAD(Q, T)$$Q:NAME$",
     "ada"},
    {"UnnamedListsOfTwoInstances",
     "$S ::STREAM = \"a b\"$$T ::STREAM = \"c\"$$U ::UNNAMED = S$$V ::UNNAMED = T$$U = T$$V = S$$U$;$V$", "ca b"},
    {"Remainder", "$S ::STREAM = \"ada york !!\"$\n$Q ::PERSON = S$", "", "ERR_PARSE_TYPE_CAT_3 1"},
};
INSTANTIATE_TEST_SUITE_P(Rows, Instances, testing::ValuesIn(kInstanceRows), RowName);

TEST(InstanceReport, TellsStartEndAndVariable) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"ada york\"$$Q ::PERSON = S$"));
    const std::string& console = run.outside.console.output;
    const std::size_t start = console.find("Parsing Stream S");
    const std::size_t end = console.find("Data Stream Parsed Successfully. ");
    const std::size_t created = console.find("\nCreate Variable Q::PERSON From S\n");
    EXPECT_LT(start, end);
    EXPECT_LT(end, created);
    EXPECT_NE(created, std::string::npos) << console;
}

TEST(InstanceReport, AFailedParseEntersNothing) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    EXPECT_FALSE(run.Execute("$S ::STREAM = \"ada york\"$$Q ::PERSON = S$$S = \"1 2\"$$Q = S$"));
    EXPECT_NE(run.faults, "");
    const CVariable* name = run.root->variableTable.Find("Q:NAME");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->GetText(), "ada");
}

// The elements of an instance belong to the instance; the table borrows them.
TEST(InstanceElements, KnowTheirInstance) {
    ScriptRun run;
    run.AddType("PERSON", kPerson);
    ASSERT_TRUE(run.Execute("$S ::STREAM = \"ada york\"$$Q ::PERSON$$Q = S$$Q = S$"));
    const CVariable* holder = run.root->variableTable.Find("Q");
    const CVariable* name = run.root->variableTable.Find("Q:NAME");
    ASSERT_TRUE(holder && name);
    EXPECT_EQ(name->elementOf, holder->typeSchema.get());
    EXPECT_EQ(run.root->declaredTypes.at("Q"), holder->typeSchema);
    EXPECT_EQ(holder->typeSchema.use_count(), 3) << "variable, list and names; the replaced ones are gone";
    EXPECT_EQ(run.root->typeList.size(), 1U);
}

}  // namespace
}  // namespace kvl
