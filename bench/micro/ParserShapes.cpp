// What single shapes of grammars cost the input parser: nesting, lines, terminators, permutations. Pairs are to be read
// beside each other: nested beside flat, ten times the lines beside the lines, a search beside the library's.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "frontend/TypeFrontEnd.h"
#include "text/ProcessState.h"
#include "typeschema/InputParser.h"

namespace {

using namespace kvl;

class NoKnownTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view) const override { return nullptr; }
};

std::shared_ptr<CTypeSchema> CompileType(const std::string& root) {
    ResetProcessState();
    std::string text = "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = " + root + " $\n$END KVL VERSION=\"1.0.0\"$\n";
    std::shared_ptr<CTypeSchema> schema = ParseTypeStream(kEntityType, "T", text, MessageContext());
    std::string name;
    if (schema == nullptr || !schema->CompileDeclaration(NoKnownTypes(), name)) std::abort();
    return schema;
}

void Parse(benchmark::State& state, const std::string& root, std::string text) {
    const std::shared_ptr<CTypeSchema> declared = CompileType(root);
    const auto input = std::make_shared<const std::string>(std::move(text));
    for (auto _ : state) {
        CTypeSchema instance;
        instance.CopyDeclaration(*declared);
        if (!instance.PrepareInstance("IN")) std::abort();
        instance.input.SetText(input);
        if (!ParseInput(instance)) std::abort();
        benchmark::DoNotOptimize(instance.rootSpanEnd);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(input->size()));
}

std::string Repeated(std::string_view unit, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += unit;
    return text;
}

constexpr int kChoices = 10;

std::string Letter(int i) {
    return std::string(1, static_cast<char>('a' + i));
}

// The alternatives of all choices in a single one, or each choice in the one before.
std::string Choices(bool nested, const std::string& wrongEnd) {
    std::string head, tail;
    for (int i = 0; i < kChoices; ++i) {
        if (nested || i == 0) {
            head += "::CHOICE{ ";
            tail += " }";
        }
        head +=
            wrongEnd.empty() ? "'" + Letter(i) + "' " : "::SEQUENCE{ ::IDENTIFIER '=' ::INTEGER '" + wrongEnd + "' } ";
    }
    return "::LIST{ " + head + "R ::SEQUENCE{ NAME ::IDENTIFIER '=' NUMBER ::INTEGER ';' }" + tail + " }";
}

void ChoicesByFirstByte(benchmark::State& state, bool nested) {
    Parse(state, Choices(nested, ""), Repeated("zeta = 12345;\n", 20000));
}

void ChoicesThatFailAtTheirEnd(benchmark::State& state, bool nested) {
    Parse(state, Choices(nested, "?"), Repeated("zeta = 12345;\n", 20000));
}

void Lines(benchmark::State& state) {
    Parse(state, "::LIST{ ::LINE{ A ::IDENTIFIER B ::INTEGER } }",
          Repeated("some 12\n", static_cast<int>(state.range(0))));
}

void ListInTerminator(benchmark::State& state) {
    Parse(state, "::LIST{ TEXT ::DISTANCE{ '#' N ::LIST{ V ::INTEGER } ';' } }",
          Repeated("text 1 # 1 2 3 or so # 4 5 6 ;\n", static_cast<int>(state.range(0))));
}

void PermutationOfTwelve(benchmark::State& state) {
    std::string elements;
    for (int i = 12; i-- > 0;)
        elements += "'" + Letter(i) + "' ";
    Parse(state, "::PERMUTATION{ " + elements + "}", "a b c d e f g h i j k l");
}

// Fails at the last element of every order that fails.
void PermutationOfTwelveAlike(benchmark::State& state) {
    std::string elements;
    for (int i = 12; i-- > 0;)
        elements += "::SEQUENCE{ ::IDENTIFIER '" + std::to_string(i) + "' } ";
    Parse(state, "::PERMUTATION{ " + elements + "}", "a 0 a 1 a 2 a 3 a 4 a 5 a 6 a 7 a 8 a 9 a 10 a 11");
}

const std::string& FreeText() {
    static const std::string text = Repeated("nothing of interest stands in any of these lines, \n", 200000) + "@end";
    return text;
}

void TerminatorSearch(benchmark::State& state, const char* root) {
    Parse(state, root, FreeText());
}

void MemorySearch(benchmark::State& state) {
    const std::string& text = FreeText();
    for (auto _ : state) {
        const void* found = std::memchr(text.data(), '@', text.size());
        benchmark::DoNotOptimize(found);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

BENCHMARK_CAPTURE(ChoicesByFirstByte, flat, false);
BENCHMARK_CAPTURE(ChoicesByFirstByte, nested, true);
BENCHMARK_CAPTURE(ChoicesThatFailAtTheirEnd, flat, false);
BENCHMARK_CAPTURE(ChoicesThatFailAtTheirEnd, nested, true);
BENCHMARK(Lines)->Arg(100000)->Arg(1000000);
BENCHMARK(ListInTerminator)->Arg(10000)->Arg(100000);
BENCHMARK(PermutationOfTwelve);
BENCHMARK(PermutationOfTwelveAlike);
BENCHMARK_CAPTURE(TerminatorSearch, strict, "::STREAM{ \"@end\" }");
BENCHMARK_CAPTURE(TerminatorSearch, weak, "::STREAM{ '@end' }");
BENCHMARK(MemorySearch);

}  // namespace
