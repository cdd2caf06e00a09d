#include "typeschema/TypeText.h"

namespace kvl {
namespace {

class TypeDumpTest : public DeclaredTypesTest {};

TEST_F(TypeDumpTest, TableGoesToTheLogAlone) {
    const auto schema = Compiled("::A = ::LIST{ N ::STRING }");
    ASSERT_NE(schema, nullptr);
    schema->SetMainTypeName("NS:T:A");
    KeepLog();
    const std::string log = LogText(), console = outside_.console.output;
    schema->DumpElements();
    EXPECT_EQ(LogText().substr(log.size()),
              "\nType Schema A\n"
              "0    BEGIN ::A::LIST\n"
              "1         N::STRING\n"
              "2    END   ::A::LIST\n");
    EXPECT_EQ(outside_.console.output, console);
}

TEST_F(TypeDumpTest, NamelessTableHasAnEmptyHeading) {
    const CTypeSchema schema;
    EXPECT_EQ(schema.ElementsText(), "\n\n");
}

TEST_F(TypeDumpTest, DeclarationIsATreeWithNamesInColour) {
    const auto schema =
        Compiled("::A = ::SEQUENCE{ N ::STRING ';' X ::B ::LIST{ \"a\" ::B } } ::B = ::OPTION{ ::INTEGER }");
    ASSERT_NE(schema, nullptr);
    schema->DumpDeclaration();
    EXPECT_EQ(outside_.console.output,
              "\n\nA = \n"
              "    ::SEQUENCE - A\n"
              "        N::STRING\n"
              "        ';'\n"
              "        X::OPTION - B\n"
              "            ::INTEGER\n"
              "        ::LIST\n"
              "            \"a\"\n"
              "            ::OPTION - B\n"
              "                ::INTEGER\n"
              "\n");
    EXPECT_EQ(outside_.console.TextIn(13), "NX");
}

TEST_F(TypeDumpTest, DeclarationShowsWhatIsNotCompiled) {
    const auto schema = Read("::A = ::SEQUENCE{ P ::Q:R ::$S$ ::$T:U$ <<'x'>> Y ::B } ::B = ::LIST{}");
    schema->DumpDeclaration();
    EXPECT_EQ(outside_.console.output,
              "\n\nA = \n"
              "    ::SEQUENCE\n"
              "        :Q::R\n"
              "        :S\n"
              "        :T::U\n"
              "        <<...>>\n"
              "        Y::B\n"
              "\n\nB = \n"
              "    ::LIST\n"
              "\n");
}

}  // namespace
}  // namespace kvl
