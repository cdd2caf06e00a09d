// Records of many, mostly empty columns, and the store that keeps them in key order, against the plain containers of
// the library: a text for each column, an ordered map from key to record.

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "values/RecordStore.h"

namespace {

using namespace kvl;

constexpr int kColumns = 40;
constexpr std::string_view kText = "a text of more than eight bytes";
using PlainRecord = std::vector<std::string>;
using PlainStore = std::map<std::vector<int>, PlainRecord>;

// Two short texts and a long one.
Record MakeRecord() {
    Record record;
    record.Set(3, "three");
    record.Set(17, kText);
    record.Set(31, "31");
    return record;
}

PlainRecord MakePlainRecord() {
    PlainRecord record(kColumns);
    record[3] = "three";
    record[17] = kText;
    record[31] = "31";
    return record;
}

void MakeSparse(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeRecord());
}
void MakePlain(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(MakePlainRecord());
}

void ReadSparse(benchmark::State& state) {
    const Record record = MakeRecord();
    for (auto _ : state)
        for (int column = 0; column < kColumns; ++column)
            benchmark::DoNotOptimize(record.Get(column));
    state.SetItemsProcessed(state.iterations() * kColumns);
}
void ReadPlain(benchmark::State& state) {
    const PlainRecord record = MakePlainRecord();
    for (auto _ : state)
        for (const std::string& cell : record)
            benchmark::DoNotOptimize(std::string_view(cell));
    state.SetItemsProcessed(state.iterations() * kColumns);
}

// Children in tens, as nested lists have them.
constexpr int kChildren = 10;

RecordStore FillStore(int count) {
    RecordStore store;
    for (int i = 0; i < count; ++i) {
        const int path[] = {i / kChildren, i % kChildren};
        store.Append(path, MakeRecord());
    }
    return store;
}

PlainStore FillMap(int count) {
    PlainStore store;
    for (int i = 0; i < count; ++i)
        store.emplace(std::vector<int>{i / kChildren, i % kChildren}, MakePlainRecord());
    return store;
}

void AppendToStore(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(FillStore(static_cast<int>(state.range(0))).Size());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
void AppendToMap(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(FillMap(static_cast<int>(state.range(0))).size());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// For each parent, a look at all of its children.
void WalkStore(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const RecordStore store = FillStore(count);
    for (auto _ : state)
        for (int parent = 0; parent < count / kChildren; ++parent) {
            const int path[] = {parent};
            const RecordStore::Position behind = store.Behind(path);
            for (auto position = store.LowerBound(path); !(position == behind); position = store.Next(position))
                benchmark::DoNotOptimize(store.At(position).Get(17));
        }
    state.SetItemsProcessed(state.iterations() * count);
}
void WalkMap(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const PlainStore store = FillMap(count);
    for (auto _ : state)
        for (int parent = 0; parent < count / kChildren; ++parent)
            for (auto entry = store.lower_bound({parent}); entry != store.end() && entry->first[0] == parent; ++entry)
                benchmark::DoNotOptimize(std::string_view(entry->second[17]));
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(MakeSparse);
BENCHMARK(MakePlain);
BENCHMARK(ReadSparse);
BENCHMARK(ReadPlain);
BENCHMARK(AppendToStore)->Arg(1000)->Arg(100000);
BENCHMARK(AppendToMap)->Arg(1000)->Arg(100000);
BENCHMARK(WalkStore)->Arg(1000)->Arg(100000);
BENCHMARK(WalkMap)->Arg(1000)->Arg(100000);

}  // namespace
