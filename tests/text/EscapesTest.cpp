#include "text/Escapes.h"

#include <gtest/gtest.h>

namespace kvl {
namespace {

struct TextRow {
    std::string_view input, expected;
};

constexpr TextRow kEscapeRows[] = {
    {R"(\n\r\t\v\b\f\a\'\"\?\\)", "\n\r\t\v\b\f\a'\"?\\"},
    {R"(a\$b\x\0)", R"(a\$b\x\0)"},
    {R"(\\n)", "\\n"},
    {R"(end\)", R"(end\)"},
    {R"(\z\n)", "\\z\n"},
    {"", ""},
};

TEST(EscapesTest, KnownOnesBecomeBytes) {
    for (const TextRow& row : kEscapeRows)
        EXPECT_EQ(ResolveEscapes(row.input), row.expected) << row.input;
}

constexpr TextRow kQuotedRows[] = {
    {R"("")", ""}, {R"("a""b")", R"(a"b)"}, {R"("""""")", R"("")"}, {R"("a"b")", R"(a"b)"}, {R"(")", ""},
    {"", ""},      {R"("''")", "''"},
};

TEST(EscapesTest, QuotesAreTakenOff) {
    for (const TextRow& row : kQuotedRows)
        EXPECT_EQ(UnquoteLiteral(row.input, '"'), row.expected) << row.input;
    EXPECT_EQ(UnquoteLiteral("'a''b'", '\''), "a'b");
}

}  // namespace
}  // namespace kvl
