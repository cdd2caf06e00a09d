// Enumerations and structures into to_string functions: a PEGTL grammar whose actions fill structures, written by fmt.
#include <fmt/format.h>

#include <tao/pegtl.hpp>

#include "jobs/declarations/Model.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;
namespace pegtl = tao::pegtl;

struct State {
    std::vector<Item> items;
    std::string_view note;
    Entry entry;
};

struct Space : pegtl::star<pegtl::space> {};
template <char c>
struct Mark : pegtl::seq<Space, pegtl::one<c>, Space> {};
template <class Word>
struct Spaced : pegtl::seq<Word, pegtl::plus<pegtl::space>> {};
using Number = pegtl::plus<pegtl::digit>;

struct LineNote : pegtl::seq<TAO_PEGTL_STRING("//"), pegtl::until<pegtl::at<pegtl::eolf>>> {};
struct BlockNote : pegtl::seq<TAO_PEGTL_STRING("/*"), pegtl::until<TAO_PEGTL_STRING("*/")>> {};
struct Note : pegtl::sor<LineNote, BlockNote> {};
struct ItemNote : pegtl::seq<Note, Space> {};
struct EntryNote : pegtl::seq<Note, Space> {};

struct EnumName : pegtl::identifier {};
struct ValueName : pegtl::identifier {};
struct ValueNumber : Number {};
struct Value : pegtl::seq<ValueName, pegtl::opt<Mark<'='>, ValueNumber>, Mark<','>> {};
struct Enum : pegtl::if_must<Spaced<TAO_PEGTL_STRING("enum")>, EnumName, Mark<'{'>,
                             pegtl::until<pegtl::one<'}'>, pegtl::sor<EntryNote, Value>>, Mark<';'>> {};

struct Text : pegtl::sor<TAO_PEGTL_KEYWORD("string"), TAO_PEGTL_KEYWORD("string_view"), TAO_PEGTL_KEYWORD("path"),
                         TAO_PEGTL_KEYWORD("char_array")> {};
struct Character : pegtl::sor<TAO_PEGTL_KEYWORD("bool"), TAO_PEGTL_KEYWORD("char"), TAO_PEGTL_KEYWORD("byte"),
                              TAO_PEGTL_KEYWORD("wchar_t")> {};
struct Numeric
    : pegtl::sor<TAO_PEGTL_KEYWORD("float"), TAO_PEGTL_KEYWORD("double"), TAO_PEGTL_STRING("long double"),
                 TAO_PEGTL_KEYWORD("half"), TAO_PEGTL_KEYWORD("int8_t"), TAO_PEGTL_KEYWORD("int16_t"),
                 TAO_PEGTL_KEYWORD("int32_t"), TAO_PEGTL_KEYWORD("int64_t"), TAO_PEGTL_KEYWORD("uint8_t"),
                 TAO_PEGTL_KEYWORD("uint16_t"), TAO_PEGTL_KEYWORD("uint32_t"), TAO_PEGTL_KEYWORD("uint64_t")> {};
struct Time : pegtl::sor<TAO_PEGTL_KEYWORD("date"), TAO_PEGTL_KEYWORD("time_of_day"), TAO_PEGTL_KEYWORD("duration"),
                         TAO_PEGTL_KEYWORD("time_zone")> {};
struct Container : pegtl::seq<pegtl::sor<TAO_PEGTL_KEYWORD("vector"), TAO_PEGTL_KEYWORD("optional"),
                                         TAO_PEGTL_KEYWORD("set"), TAO_PEGTL_KEYWORD("list")>,
                              Mark<'<'>, pegtl::identifier, Mark<'>'>> {};
struct Pointer : pegtl::seq<pegtl::identifier, Mark<'*'>> {};
struct Object : pegtl::identifier {};
struct Kind : pegtl::sor<Text, Character, Numeric, Time, Container, Pointer, Object> {};

struct Qualifier : pegtl::sor<TAO_PEGTL_KEYWORD("const"), TAO_PEGTL_KEYWORD("static"), TAO_PEGTL_KEYWORD("mutable")> {};
struct MemberName : pegtl::identifier {};
struct MemberSize : Number {};
struct MemberDefault : Number {};
struct Member
    : pegtl::seq<pegtl::opt<Qualifier, Space>, Kind, Space, MemberName, pegtl::opt<Mark<'['>, MemberSize, Mark<']'>>,
                 pegtl::opt<Mark<'='>, MemberDefault>, Mark<';'>> {};
struct StructName : pegtl::identifier {};
struct BaseName : pegtl::identifier {};
struct Struct : pegtl::if_must<Spaced<TAO_PEGTL_STRING("struct")>, StructName, pegtl::opt<Mark<':'>, BaseName>,
                               Mark<'{'>, pegtl::until<pegtl::one<'}'>, pegtl::sor<EntryNote, Member>>, Mark<';'>> {};
struct Grammar : pegtl::must<Space, pegtl::plus<pegtl::sor<ItemNote, Enum, Struct>>, pegtl::eof> {};

template <class Rule>
struct Action : pegtl::nothing<Rule> {};

template <std::string_view Entry::*field>
struct KeepInEntry {
    template <class Input>
    static void apply(const Input& in, State& state) {
        state.entry.*field = in.string_view();
    }
};
template <>
struct Action<ValueName> : KeepInEntry<&Entry::name> {};
template <>
struct Action<ValueNumber> : KeepInEntry<&Entry::number> {};
template <>
struct Action<Qualifier> : KeepInEntry<&Entry::qualifier> {};
template <>
struct Action<MemberName> : KeepInEntry<&Entry::name> {};
template <>
struct Action<MemberSize> : KeepInEntry<&Entry::size> {};
template <>
struct Action<MemberDefault> : KeepInEntry<&Entry::usually> {};

void SetFunction(State& state, std::string_view function) {
    state.entry.function = function;
}
template <>
struct Action<Text> {
    static void apply0(State& state) { SetFunction(state, "quoted"); }
};
template <>
struct Action<Character> {
    static void apply0(State& state) { SetFunction(state, "character"); }
};
template <>
struct Action<Numeric> {
    static void apply0(State& state) { SetFunction(state, "std::to_string"); }
};
template <>
struct Action<Time> {
    static void apply0(State& state) { SetFunction(state, "iso_time"); }
};
template <>
struct Action<Container> {
    static void apply0(State& state) { SetFunction(state, "joined"); }
};
template <>
struct Action<Pointer> {
    static void apply0(State& state) { SetFunction(state, "address"); }
};
template <>
struct Action<Object> {
    static void apply0(State& state) { SetFunction(state, "to_string"); }
};

struct KeepEntry {
    static void apply0(State& state) {
        state.items.back().entries.push_back(state.entry);
        state.entry = Entry();
    }
};
template <>
struct Action<Value> : KeepEntry {};
template <>
struct Action<Member> : KeepEntry {};
template <>
struct Action<Note> {
    template <class Input>
    static void apply(const Input& in, State& state) {
        state.note = in.string_view();
    }
};
template <>
struct Action<EntryNote> {
    static void apply0(State& state) { state.items.back().entries.emplace_back().note = state.note; }
};
template <>
struct Action<ItemNote> {
    static void apply0(State& state) { state.items.emplace_back().note = state.note; }
};

template <bool isEnum>
struct OpenItem {
    template <class Input>
    static void apply(const Input& in, State& state) {
        Item& item = state.items.emplace_back();
        item.isEnum = isEnum;
        item.name = in.string_view();
    }
};
template <>
struct Action<EnumName> : OpenItem<true> {};
template <>
struct Action<StructName> : OpenItem<false> {};
template <>
struct Action<BaseName> {
    template <class Input>
    static void apply(const Input& in, State& state) {
        state.items.back().base = in.string_view();
    }
};

using Out = std::back_insert_iterator<std::string>;

void WriteEnum(const Item& item, Out to) {
    fmt::format_to(to, FMT_STRING("inline std::string_view to_string({} value) {{\r\n    switch (value) {{\r\n"),
                   item.name);
    for (const Entry& entry : item.entries) {
        if (!entry.note.empty()) {
            fmt::format_to(to, FMT_STRING("        {}\r\n"), entry.note);
            continue;
        }
        fmt::format_to(to, FMT_STRING("        case {}::{}: return \"{}\";"), item.name, entry.name, entry.name);
        if (!entry.number.empty()) fmt::format_to(to, FMT_STRING("  // {}"), entry.number);
        fmt::format_to(to, "\r\n");
    }
    fmt::format_to(to, "    }}\r\n    return \"\";\r\n}}\r\n\r\n");
}

void WriteStruct(const Item& item, Out to) {
    fmt::format_to(
        to, FMT_STRING("inline std::string to_string(const {}& value) {{\r\n    std::string text = \"{} {{\";\r\n"),
        item.name, item.name);
    if (!item.base.empty())
        fmt::format_to(to, FMT_STRING("    text += to_string(static_cast<const {}&>(value));\r\n"), item.base);
    for (const Entry& entry : item.entries) {
        if (!entry.note.empty()) fmt::format_to(to, FMT_STRING("    {}\r\n"), entry.note);
        if (!entry.note.empty() || entry.qualifier == "static") continue;
        fmt::format_to(to, FMT_STRING("    text += \" {}=\" + {}(value.{});"), entry.name, entry.function, entry.name);
        if (!entry.size.empty()) fmt::format_to(to, FMT_STRING("  // {} elements"), entry.size);
        if (!entry.usually.empty()) fmt::format_to(to, FMT_STRING("  // usually {}"), entry.usually);
        fmt::format_to(to, "\r\n");
    }
    fmt::format_to(to, "    return text + \" }}\";\r\n}}\r\n\r\n");
}

bool Generate(std::string_view input, std::string& output) {
    State state;
    pegtl::memory_input<pegtl::tracking_mode::lazy> in(input.data(), input.data() + input.size(), "input");
    try {
        pegtl::parse<Grammar, Action>(in, state);
    } catch (const pegtl::parse_error&) {
        return false;
    }
    Out to(output);
    fmt::format_to(to, "#pragma once\r\n\r\n");
    for (const Item& item : state.items)
        if (!item.note.empty())
            fmt::format_to(to, FMT_STRING("{}\r\n"), item.note);
        else if (item.isEnum)
            WriteEnum(item, to);
        else
            WriteStruct(item, to);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
