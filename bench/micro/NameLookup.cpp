// Finding a variable by its name: the table against a look at every label, for full names, short names and gaps.

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "values/VariableTable.h"

namespace {

using namespace kvl;

// "D:ITEM:GROUP_3:FIELD_7": labels as a declared type of `count` elements makes them.
std::vector<std::string> MakeLabels(int count) {
    std::vector<std::string> labels;
    for (int i = 0; i < count; ++i)
        labels.push_back("D:ITEM:GROUP_" + std::to_string(i / 10) + ":FIELD_" + std::to_string(i));
    return labels;
}

enum NameForm : int { kFull, kShort, kGap };

std::string NameFor(const std::string& label, std::int64_t form) {
    const std::string last = label.substr(label.rfind(':'));
    return form == kFull ? label : form == kShort ? last : "D:~" + last;
}

std::vector<std::string> MakeNames(const benchmark::State& state) {
    std::vector<std::string> names;
    for (const std::string& label : MakeLabels(static_cast<int>(state.range(1))))
        names.push_back(NameFor(label, state.range(0)));
    return names;
}

VariableTable MakeTable(int count) {
    VariableTable table;
    for (const std::string& label : MakeLabels(count)) {
        auto variable = MakeVariable(kTypeString);
        variable->label = label;
        static_cast<void>(table.Insert(std::move(variable)));
    }
    return table;
}

void Table(benchmark::State& state) {
    const VariableTable table = MakeTable(static_cast<int>(state.range(1)));
    const std::vector<std::string> names = MakeNames(state);
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(table.FindOne(name));
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

void EveryLabel(benchmark::State& state) {
    const std::vector<std::string> labels = MakeLabels(static_cast<int>(state.range(1)));
    const std::vector<std::string> names = MakeNames(state);
    for (auto _ : state)
        for (const std::string& name : names)
            for (const std::string& label : labels)
                if (MatchesLabel(name, label)) benchmark::DoNotOptimize(label.data());
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

// Full names only: what an ordered map would cost.
void OrderedMap(benchmark::State& state) {
    std::map<std::string, int, std::less<>> labels;
    for (const std::string& label : MakeLabels(static_cast<int>(state.range(1))))
        labels.emplace(label, 0);
    const std::vector<std::string> names = MakeNames(state);
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(labels.find(name));
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

BENCHMARK(Table)->ArgNames({"form", "labels"})->ArgsProduct({{kFull, kShort, kGap}, {10, 100, 1000, 100000}});
BENCHMARK(EveryLabel)->ArgNames({"form", "labels"})->ArgsProduct({{kFull, kShort, kGap}, {10, 100}});
BENCHMARK(OrderedMap)->ArgNames({"form", "labels"})->ArgsProduct({{kFull}, {10, 100, 1000}});

}  // namespace
