// Declared types as they are judged and compiled: what is reported, and what stands in the dumps.
#include "support/CaseFile.h"
#include "typeschema/TypeText.h"

namespace kvl {
namespace {

// Behind the heading of the main type A.
std::string Table(const CTypeSchema& schema) {
    const std::string text = schema.ElementsText();
    return text.substr(text.find(" A\n") + 3);
}

// "LABEL(list)" for each labelled element; the list is that of which it is a column.
std::string Links(const CTypeSchema& schema) {
    std::string text;
    for (const ElementEntry& entry : schema.elements) {
        const CVariable& variable = *entry.variable;
        if (entry.mark == kMarkEnd || variable.label.empty()) continue;
        text += variable.label + "(" + (variable.ownerList ? variable.ownerList->label : "") + ") ";
    }
    return text;
}

std::string Columns(const CTypeSchema& schema) {
    std::string text;
    for (const ElementEntry& entry : schema.elements) {
        if (entry.mark != kMarkBegin || !entry.variable->IsList()) continue;
        const auto& list = static_cast<const CVariableKVLCategoryList&>(*entry.variable);
        text += list.label + (list.parentList ? " in " + list.parentList->label : "") + " {";
        for (std::size_t i = 0; i < list.Columns().size(); ++i) {
            EXPECT_EQ(list.Columns()[i]->columnIndex, static_cast<int>(i));
            text += " " + list.Columns()[i]->label;
        }
        text += " } " + list.listTypeName + "\n";
    }
    return text;
}

std::string Variables(const CTypeSchema& schema) {
    std::string text;
    for (const CVariable* variable : schema.VariablesInOrder())
        text += variable->label + " ";
    return text;
}

std::string Places(const CTypeSchema& schema) {
    std::string text;
    for (const ElementEntry& entry : schema.elements) {
        if (entry.mark == kMarkEnd) continue;
        const CVariable& variable = *entry.variable;
        TextPlace place;
        EXPECT_TRUE(LocateInSource("/home/T.txt", variable.declarationPosition, variable.declarationText, place));
        text += variable.declarationText + " " + std::to_string(place.line) + ":" + std::to_string(place.column) + "\n";
    }
    return text;
}

class DeclaredTypeCaseTest : public DeclaredTypesTest, public testing::WithParamInterface<TextCase> {
protected:
    void ExpectIfGiven(std::string_view section, const std::string& actual) {
        if (!GetParam()[section].empty()) ExpectSection(GetParam(), section, actual);
    }
    std::string Declaration(const CTypeSchema& schema) {
        outside_.console.output.clear();
        schema.DumpDeclaration();
        return outside_.console.output.substr(1) + "in colour: " + outside_.console.TextIn(13);
    }
};
KVL_INSTANTIATE_CASES(DeclaredTypeCaseTest, "typeschema/DeclaredTypes.cases");

TEST_P(DeclaredTypeCaseTest, IsJudgedAndCompiled) {
    LoadedTypes known;
    known.LoadLines(GetParam()["known"]);
    const auto schema = Read(GetParam().Line("types"));
    if (!GetParam()["read"].empty()) return ExpectSection(GetParam(), "read", Declaration(*schema));
    KeepLog();
    const std::size_t logBefore = LogText().size();
    const bool compiled = Compile(*schema, known);
    known = LoadedTypes();  // what is imported outlives its schema
    const std::string log = LogText().substr(logBefore);
    if (GetParam()["log"].empty()) {
        ExpectSection(GetParam(), "messages", Messages());
    } else {
        constexpr std::string_view kHeading = "\nType Schema A\n";
        ASSERT_TRUE(log.starts_with(kHeading));
        ExpectSection(GetParam(), "log", log.substr(kHeading.size(), log.find("\nERROR: ") - kHeading.size()));
    }
    EXPECT_EQ(compiled, Process().errorCount == 0);
    if (!compiled) return;

    ExpectIfGiven("table", Table(*schema));
    ExpectIfGiven("links", Links(*schema));
    ExpectIfGiven("declaration", Declaration(*schema));
    ExpectIfGiven("places", Places(*schema));
    CTypeSchema instance, list;
    instance.CopyDeclaration(*schema);
    ASSERT_TRUE(instance.PrepareInstance("IN"));
    ExpectIfGiven("instance", Links(instance));
    ExpectIfGiven("columns", Columns(instance));
    ExpectIfGiven("variables", Variables(instance));
    list.CopyDeclaration(*schema);
    list.WrapInList();
    ASSERT_TRUE(list.PrepareInstance("L"));
    ExpectIfGiven("list", Table(list) + Columns(list));
}

TEST_F(DeclaredTypesTest, TableGoesToTheLogAlone) {
    const auto schema = Compiled("::A = ::LIST{ N ::STRING }");
    ASSERT_NE(schema, nullptr);
    schema->SetMainTypeName("NS:T:A");
    KeepLog();
    const std::string log = LogText(), console = outside_.console.output;
    schema->DumpElements();
    EXPECT_EQ(LogText().substr(log.size()), "\nType Schema A\n" + Table(*schema));
    EXPECT_EQ(outside_.console.output, console);
    EXPECT_EQ(CTypeSchema().ElementsText(), "\n\n");
}

TEST_F(DeclaredTypesTest, InstanceIsRebuiltUnderItsName) {
    const auto schema = Compiled("::A = ::SEQUENCE{ X ::B } ::B = ::SEQUENCE{ N ::STRING }");
    ASSERT_NE(schema, nullptr);
    schema->dataFile = "data.txt";
    schema->SetMainTypeName("NS:A");
    CTypeSchema instance;
    instance.CopyDeclaration(*schema);
    EXPECT_TRUE(instance.elements.empty());
    ASSERT_TRUE(instance.PrepareInstance("IN"));
    ASSERT_TRUE(instance.PrepareInstance("NS:OTHER"));
    EXPECT_EQ(Links(instance), "NS:OTHER() NS:OTHER:X() NS:OTHER:X:N() ");
    EXPECT_EQ(instance.GetRootVariable()->userTypeName, "NS:A");
    EXPECT_EQ(instance.GetDataName(), "data.txt");
    EXPECT_EQ(Links(*schema), ":X() :X:N() ");
}

TEST_F(DeclaredTypesTest, FaultInTextThatIsNoFileStandsAtItsBeginning) {
    const auto schema = Read("::A = ::LIST{\n X ::B }");
    schema->SetSourceStream("S:TYPE");
    EXPECT_FALSE(Compile(*schema));
    EXPECT_EQ(Messages(),
              "ERR_DECL_TYPE_ELEM_3 Type ::B for element X is not declared || "
              "At line 1 near position 1 of Type S:TYPE\n");
}

TEST_F(DeclaredTypesTest, FaultIsShownThoughTheSourceHasGone) {
    const auto schema = Read("::A = ::LIST{\n X ::B }");
    outside_.memory.Remove("/home/T.txt");
    EXPECT_FALSE(Compile(*schema));
    EXPECT_TRUE(Messages().starts_with("ERR_EXEC_SCRIPT_FILE_1 "));
    EXPECT_TRUE(
        Messages().ends_with("ERR_DECL_TYPE_ELEM_3 Type ::B for element X is not declared || "
                             "At line 3 of Type /home/T.txt\n"));
}

TEST_F(DeclaredTypesTest, ManyFaultsReadTheSourceOnce) {
    std::string types = "::A = ::LIST{}";
    for (int i = 0; i < 50; ++i)
        types += "\n::B = ::LIST{}";
    EXPECT_EQ(Compiled(types), nullptr);
    EXPECT_EQ(Process().errorCount, 49);
    EXPECT_EQ(outside_.files.CountOf(FileOperation::ReadWhole), 2) << "for the types, and for the messages";
}

}  // namespace
}  // namespace kvl
