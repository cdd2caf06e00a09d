// Fuzz target: the stream macros. The input is parted by zero bytes into up to four texts and a width. Each operation
// must give what the plain way gives, and the macros, called by a script, must give the same.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

#include "builtins/InstallBuiltIns.h"
#include "builtins/PlainMerge.h"
#include "builtins/StreamText.h"
#include "interpreter/ScriptLoading.h"
#include "support/TestPlatform.h"
#include "text/ByteClass.h"
#include "text/LowerCase.h"
#include "text/Numbers.h"
#include "text/ProcessState.h"
#include "text/Replace.h"

namespace {

using namespace kvl;

constexpr std::size_t kNone = std::string::npos;
constexpr int kWidestText = 5000;

// --- the plain way ---

std::string PlainReplace(std::string text, const std::string& what, const std::string& byWhat) {
    if (what.empty()) return text;
    for (std::size_t place = 0; (place = text.find(what, place)) != kNone; place += byWhat.size())
        text.replace(place, what.size(), byWhat);
    return text;
}

std::string PlainReplace2(std::string text, const std::string& start, const std::string& end, const std::string& by) {
    if (start.empty() || end.empty()) return text;
    for (std::size_t place = 0; (place = text.find(start, place)) != kNone; place += by.size()) {
        const std::size_t behind = text.find(end, place + start.size());
        if (behind == kNone) break;
        text.replace(place, behind + end.size() - place, by);
    }
    return text;
}

std::string PlainClear(std::string text) {
    while (!text.empty() && IsInvisible(text.front()))
        text.erase(0, 1);
    while (!text.empty() && IsInvisible(text.back()))
        text.pop_back();
    for (std::size_t i = 1; i < text.size();) {
        if (IsInvisible(text[i]) && IsInvisible(text[i - 1]))
            text.erase(i, 1);
        else
            ++i;
    }
    return text;
}

std::string PlainLeft(std::string text, int width) {
    if (text.empty() || width < 0) return text;
    while (text.size() > static_cast<std::size_t>(width))
        text.pop_back();
    while (text.size() < static_cast<std::size_t>(width))
        text += ' ';
    return text;
}

std::string PlainRight(std::string text, int width) {
    if (text.empty() || width < 0) return text;
    while (text.size() > static_cast<std::size_t>(width))
        text.erase(0, 1);
    while (text.size() < static_cast<std::size_t>(width))
        text.insert(0, 1, ' ');
    return text;
}

// --- the macros ---

struct StreamCall {
    const char* call;
    std::string expected;
};

[[noreturn]] void Stop(const char* what, const std::string& told) {
    std::fprintf(stderr, "%s\n%s\n", what, told.c_str());
    std::abort();
}

void Expect(const std::string& expected, const std::string& actual, const char* what) {
    if (actual != expected) Stop(what, "expected |" + expected + "|\nactual   |" + actual + "|");
}

std::string ScriptText(const std::array<StreamCall, 10>& calls, int width) {
    std::string text =
        "$BEGIN KVL VERSION=\"1.0.0\"$\n$BEGIN SCRIPT MAIN()$\n$D ::KVL:DIRECTORY$$D:SET_PATH(\"\")$\n"
        "$N ::INTEGER = " +
        std::to_string(width) + "$\n";
    for (const char* name : {"T", "A", "B", "C"})
        text += std::string("$") + name + " ::STREAM = D:FILE(\"" + name + ".txt\")$\n";
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const std::string name = "R" + std::to_string(i);
        text.append("$").append(name).append(" ::STREAM = KVL:STREAM:").append(calls[i].call);
        text.append("$$D:FILE(\"").append(name).append(".txt\") = ").append(name).append("$\n");
    }
    return text + "$END SCRIPT MAIN()$\n$END KVL VERSION=\"1.0.0\"$\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::array<std::string, 5> texts;
    for (std::string& text : texts) {
        text = bytes.substr(0, bytes.find('\0'));
        bytes.remove_prefix(std::min(text.size() + 1, bytes.size()));
    }
    const auto& [t, a, b, c, n] = texts;
    const int width = ReadInteger(n) % kWidestText;
    const std::array<StreamCall, 10> calls = {{
        {"MERGE_STREAM(T, A, B, C)", PlainMerge(t, a, b, c)},
        {"REPLACE_STREAM(T, A, B)", PlainReplace(t, a, b)},
        {"REPLACE2_STREAM(T, A, B, C)", PlainReplace2(t, a, b, c)},
        {"DELETE_STREAM(T, A)", PlainReplace(t, a, "")},
        {"CLEAR_STREAM(T)", PlainClear(t)},
        {"UPPERCASE_STREAM(T)", UpperCase(t)},
        {"LOWERCASE_STREAM(T)", LowerCase(std::string_view(t))},
        {"LEFT_STREAM(T, N)", PlainLeft(t, width)},
        {"RIGHT_STREAM(T, N)", PlainRight(t, width)},
        {"LENGTH_STREAM(T)", std::to_string(t.size())},
    }};
    const std::string made[] = {
        Merge(t, a, b, c), ReplaceAll(t, a, b), Replace2(t, a, b, c),           ReplaceAll(t, a, {}),
        Clear(t),          UpperCase(t),        LowerCase(std::string_view(t)), Left(t, width),
        Right(t, width)};
    for (std::size_t i = 0; i < std::size(made); ++i)
        Expect(calls[i].expected, made[i], calls[i].call);

    ResetProcessState();
    InstallBuiltIns();
    ScopedPlatform outside;
    outside.memory.Put("/home/main.kvl", ScriptText(calls, width));
    for (std::size_t i = 0; i < 4; ++i)
        outside.memory.Put(std::string("/home/") + "TABC"[i] + ".txt", texts[i]);
    Process().overwritePromptEnabled = false;
    if (!LoadAndRun("/home/main.kvl")) Stop("a call has failed", outside.console.output);
    for (std::size_t i = 0; i < calls.size(); ++i)
        Expect(calls[i].expected, outside.memory.Get("/home/R" + std::to_string(i) + ".txt"), calls[i].call);
    return 0;
}
