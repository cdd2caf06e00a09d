// Groups of parts of leaves into a nested HTML list: a PEGTL grammar whose actions fill structures, written by fmt.
#include <fmt/format.h>

#include <tao/pegtl.hpp>
#include <vector>

#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;
namespace pegtl = tao::pegtl;

struct Leaf {
    std::string_view name, value;
};
struct Part {
    std::string_view name;
    std::vector<Leaf> leaves;
};
struct Group {
    std::string_view name;
    std::vector<Part> parts;
};
using Tree = std::vector<Group>;

struct Space : pegtl::star<pegtl::space> {};
template <char c>
struct Mark : pegtl::seq<Space, pegtl::one<c>, Space> {};
struct GroupName : pegtl::identifier {};
struct PartName : pegtl::identifier {};
struct LeafName : pegtl::identifier {};
struct LeafValue : pegtl::plus<pegtl::digit> {};

struct LeafRule : pegtl::if_must<TAO_PEGTL_KEYWORD("leaf"), Space, LeafName, Mark<'='>, LeafValue, Mark<';'>> {};
struct PartRule
    : pegtl::if_must<TAO_PEGTL_KEYWORD("part"), Space, PartName, Mark<'{'>, pegtl::plus<LeafRule>, Mark<'}'>> {};
struct GroupRule
    : pegtl::if_must<TAO_PEGTL_KEYWORD("group"), Space, GroupName, Mark<'{'>, pegtl::plus<PartRule>, Mark<'}'>> {};
struct Grammar : pegtl::must<Space, pegtl::plus<GroupRule>, pegtl::eof> {};

template <class Rule>
struct Action : pegtl::nothing<Rule> {};
template <>
struct Action<GroupName> {
    template <class Input>
    static void apply(const Input& in, Tree& tree) {
        tree.emplace_back().name = in.string_view();
    }
};
template <>
struct Action<PartName> {
    template <class Input>
    static void apply(const Input& in, Tree& tree) {
        tree.back().parts.emplace_back().name = in.string_view();
    }
};
template <>
struct Action<LeafName> {
    template <class Input>
    static void apply(const Input& in, Tree& tree) {
        tree.back().parts.back().leaves.emplace_back().name = in.string_view();
    }
};
template <>
struct Action<LeafValue> {
    template <class Input>
    static void apply(const Input& in, Tree& tree) {
        tree.back().parts.back().leaves.back().value = in.string_view();
    }
};

void WriteTree(const Tree& tree, std::string& output) {
    auto to = std::back_inserter(output);
    fmt::format_to(to, "<ul>\r\n");
    for (const Group& group : tree) {
        fmt::format_to(to, FMT_STRING("  <li>{}\r\n    <ul>\r\n"), group.name);
        for (const Part& part : group.parts) {
            fmt::format_to(to, FMT_STRING("      <li>{}\r\n        <ul>\r\n"), part.name);
            for (const Leaf& leaf : part.leaves)
                fmt::format_to(to, FMT_STRING("          <li>{}: {}</li>\r\n"), leaf.name, leaf.value);
            fmt::format_to(to, "        </ul>\r\n      </li>\r\n");
        }
        fmt::format_to(to, "    </ul>\r\n  </li>\r\n");
    }
    fmt::format_to(to, "</ul>\r\n");
}

bool Generate(std::string_view input, std::string& output) {
    Tree tree;
    pegtl::memory_input<pegtl::tracking_mode::lazy> in(input.data(), input.data() + input.size(), "input");
    try {
        pegtl::parse<Grammar, Action>(in, tree);
    } catch (const pegtl::parse_error&) {
        return false;
    }
    WriteTree(tree, output);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
