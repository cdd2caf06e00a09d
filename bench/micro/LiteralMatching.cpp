// Literals in the input: matched at the cursor by both rules, and searched for, against the library's own searches.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

#include "typeschema/WeakMatch.h"

namespace {

using namespace kvl;

InputWindow WindowOn(const std::string& text) {
    static ByteRuns runs;
    return {text, 0, static_cast<int>(text.size()), 0, &runs};
}

void StrictAtCursor(benchmark::State& state) {
    const std::string text = "interface Shape {";
    for (auto _ : state) {
        InputWindow window = WindowOn(text);
        benchmark::DoNotOptimize(MatchStrict(window, "interface "));
    }
}
void WeakAtCursor(benchmark::State& state) {
    const std::string text = "\r\n    interface \t Shape {";
    for (auto _ : state) {
        InputWindow window = WindowOn(text);
        benchmark::DoNotOptimize(MatchWeak(window, "interface ", MatchPlace::Anchored));
    }
}
void WeakThatFails(benchmark::State& state) {
    const std::string text = "    interval Shape {";
    for (auto _ : state) {
        InputWindow window = WindowOn(text);
        benchmark::DoNotOptimize(MatchWeak(window, "interface ", MatchPlace::Anchored));
    }
}

// Words, with the mark behind 100,000 of them; single brackets make false starts.
const std::string& LongText() {
    static const std::string text = [] {
        std::string words;
        for (int i = 0; i < 100000; ++i)
            words += i % 20 == 0 ? "some [x] " : "some ";
        return words + "[[mark]]";
    }();
    return text;
}
constexpr std::string_view kMark = "[[";

template <class Search>
void SearchText(benchmark::State& state, Search search) {
    const std::string& text = LongText();
    for (auto _ : state)
        benchmark::DoNotOptimize(search(text));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void SearchWindow(benchmark::State& state) {
    SearchText(state, [](const std::string& text) { return WindowOn(text).Find(kMark, 0); });
}
void SearchWeak(benchmark::State& state) {
    SearchText(state, [](const std::string& text) {
        InputWindow window = WindowOn(text);
        return MatchWeak(window, kMark, MatchPlace::Anywhere).start;
    });
}
void SearchMemmem(benchmark::State& state) {
    SearchText(state,
               [](const std::string& text) { return memmem(text.data(), text.size(), kMark.data(), kMark.size()); });
}
void SearchBoyerMoore(benchmark::State& state) {
    const std::boyer_moore_horspool_searcher searcher(kMark.begin(), kMark.end());
    SearchText(state, [&](const std::string& text) { return std::search(text.begin(), text.end(), searcher); });
}
// An attempt at each place.
void SearchEveryPlace(benchmark::State& state) {
    SearchText(state, [](const std::string& text) {
        InputWindow window = WindowOn(text);
        for (int place = 0; place < window.end; ++place) {
            window.cursor = place;
            if (MatchStrict(window, kMark).found) return place;
        }
        return -1;
    });
}

BENCHMARK(StrictAtCursor);
BENCHMARK(WeakAtCursor);
BENCHMARK(WeakThatFails);
BENCHMARK(SearchWindow);
BENCHMARK(SearchWeak);
BENCHMARK(SearchMemmem);
BENCHMARK(SearchBoyerMoore);
BENCHMARK(SearchEveryPlace);

}  // namespace
