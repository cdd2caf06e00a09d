// Rows "id;name;amount;flag" parsed by a declared type, by a scanner written by hand and by a PEGTL grammar, in one
// process. All three keep views into the input.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <tao/pegtl.hpp>
#include <vector>

#include "frontend/TypeFrontEnd.h"
#include "support/TextScanner.h"
#include "text/ProcessState.h"
#include "typeschema/InputParser.h"

namespace {

using namespace kvl;
namespace pegtl = tao::pegtl;

constexpr int kRows = 1000000;

const std::shared_ptr<const std::string>& Input() {
    static const std::shared_ptr<const std::string> input = [] {
        std::string text;
        for (int i = 1; i <= kRows; ++i)
            text += std::to_string(i) + ";Ada Lovelace the " + std::to_string(i * 7 % 1000) + ";" +
                    std::to_string(i * 31 % 100000) + "." + std::to_string(10 + i % 90) +
                    (i % 3 == 0 ? ";FALSE\n" : ";TRUE\n");
        return std::make_shared<const std::string>(std::move(text));
    }();
    return input;
}

class NoKnownTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view) const override { return nullptr; }
};

std::shared_ptr<CTypeSchema> CompileType(std::string body) {
    ResetProcessState();
    std::string text =
        "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::ROWS = ::LIST{ " + body + " }$\n$END KVL VERSION=\"1.0.0\"$\n";
    std::shared_ptr<CTypeSchema> schema = ParseTypeStream(kEntityType, "ROWS", text, MessageContext());
    std::string name;
    if (schema == nullptr || !schema->CompileDeclaration(NoKnownTypes(), name)) std::abort();
    return schema;
}

void SetBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Input()->size()));
}

void ParseByType(benchmark::State& state, const char* body) {
    const std::shared_ptr<CTypeSchema> declared = CompileType(body);
    for (auto _ : state) {
        CTypeSchema instance;
        instance.CopyDeclaration(*declared);
        if (!instance.PrepareInstance("IN")) std::abort();
        instance.input.SetText(Input());
        if (!ParseInput(instance)) std::abort();
        benchmark::DoNotOptimize(instance.rootSpanEnd);
    }
    SetBytes(state);
}

struct Row {
    std::string_view id, name, amount, flag;
};

void ByHand(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<Row> rows;
        bench::TextScanner scanner(*Input());
        while (!scanner.IsAtEnd()) {
            Row row;
            row.id = scanner.Digits();
            bool fits = scanner.Accept(';');
            row.name = scanner.Until(';');
            row.amount = scanner.Decimal();
            fits = fits && scanner.Accept(';');
            row.flag = scanner.Name();
            if (!fits || row.id.empty() || (row.flag != "TRUE" && row.flag != "FALSE")) std::abort();
            rows.push_back(row);
        }
        benchmark::DoNotOptimize(rows.data());
    }
    SetBytes(state);
}

struct Space : pegtl::star<pegtl::space> {};
struct Semicolon : pegtl::seq<Space, pegtl::one<';'>, Space> {};
struct Id : pegtl::plus<pegtl::digit> {};
struct Name : pegtl::plus<pegtl::not_one<';'>> {};
struct Amount : pegtl::seq<pegtl::plus<pegtl::digit>, pegtl::one<'.'>, pegtl::plus<pegtl::digit>> {};
struct Flag : pegtl::sor<TAO_PEGTL_STRING("TRUE"), TAO_PEGTL_STRING("FALSE")> {};
struct OneRow : pegtl::seq<Id, Semicolon, Name, Semicolon, Amount, Semicolon, Flag, Space> {};
struct Grammar : pegtl::must<Space, pegtl::plus<OneRow>, pegtl::eof> {};

template <class Rule>
struct Action : pegtl::nothing<Rule> {};
template <std::string_view Row::*field>
struct Keep {
    template <class In>
    static void apply(const In& in, Row& row, std::vector<Row>&) {
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

void Pegtl(benchmark::State& state) {
    const std::string& input = *Input();
    for (auto _ : state) {
        std::vector<Row> rows;
        Row row;
        pegtl::memory_input<pegtl::tracking_mode::lazy> in(input.data(), input.data() + input.size(), "input");
        if (!pegtl::parse<Grammar, Action>(in, row, rows)) std::abort();
        benchmark::DoNotOptimize(rows.data());
    }
    SetBytes(state);
}

BENCHMARK_CAPTURE(ParseByType, Elements, "ID ::INTEGER ';' NAME ::DISTANCE{ ';' } AMOUNT ::FLOAT ';' FLAG ::BOOL");
BENCHMARK_CAPTURE(ParseByType, Lines,
                  "::LINE{ ID ::INTEGER ';' NAME ::DISTANCE{ ';' } AMOUNT ::FLOAT ';' FLAG ::BOOL }");
BENCHMARK(ByHand);
BENCHMARK(Pegtl);

}  // namespace
