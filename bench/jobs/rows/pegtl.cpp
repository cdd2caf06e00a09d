// Rows "id;name;amount;flag" into one SQL statement: a PEGTL grammar whose actions fill structures, written by fmt.
#include <fmt/format.h>

#include <tao/pegtl.hpp>
#include <vector>

#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;
namespace pegtl = tao::pegtl;

struct Row {
    std::string_view id, name, amount, flag;
};

struct Space : pegtl::star<pegtl::space> {};
struct Id : pegtl::plus<pegtl::digit> {};
struct Name : pegtl::plus<pegtl::not_one<';'>> {};
struct Amount : pegtl::seq<pegtl::plus<pegtl::digit>, pegtl::opt<pegtl::one<'.'>, pegtl::star<pegtl::digit>>> {};
struct Flag : pegtl::sor<TAO_PEGTL_STRING("TRUE"), TAO_PEGTL_STRING("FALSE")> {};
struct Semicolon : pegtl::seq<Space, pegtl::one<';'>, Space> {};
struct OneRow : pegtl::seq<Id, Semicolon, Name, Semicolon, Amount, Semicolon, Flag, Space> {};
struct Grammar : pegtl::must<Space, pegtl::plus<OneRow>, pegtl::eof> {};

template <class Rule>
struct Action : pegtl::nothing<Rule> {};

template <std::string_view Row::*field>
struct Keep {
    template <class Input>
    static void apply(const Input& in, Row& row, std::vector<Row>&) {
        row.*field = in.string_view();
    }
};
template <>
struct Action<Id> : Keep<&Row::id> {};
template <>
struct Action<Name> : Keep<&Row::name> {};
template <>
struct Action<Amount> : Keep<&Row::amount> {};
template <>
struct Action<Flag> : Keep<&Row::flag> {};
template <>
struct Action<OneRow> {
    static void apply0(Row& row, std::vector<Row>& rows) { rows.push_back(row); }
};

bool Generate(std::string_view input, std::string& output) {
    std::vector<Row> rows;
    Row row;
    pegtl::memory_input<pegtl::tracking_mode::lazy> in(input.data(), input.data() + input.size(), "input");
    try {
        pegtl::parse<Grammar, Action>(in, row, rows);
    } catch (const pegtl::parse_error&) {
        return false;
    }
    auto to = std::back_inserter(output);
    fmt::format_to(to, "INSERT INTO payment (id, name, amount, flag) VALUES\r\n");
    for (const Row& one : rows)
        fmt::format_to(to, FMT_STRING("    ({}, '{}', {}, {}){}\r\n"), one.id, one.name, one.amount, one.flag,
                       &one == &rows.back() ? "" : ",");
    fmt::format_to(to, ";\r\n");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
