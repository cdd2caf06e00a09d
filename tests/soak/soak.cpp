// Many whole runs in one process, the golden cases in turn: as many objects are alive afterwards as were before.
// Arguments: how many runs.

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "support/WholeRun.h"
#include "text/ProcessState.h"

namespace {

std::atomic<long> aliveCount;

}  // namespace

// All that the program takes from the heap passes here: the other forms of new and delete lead to these, but under the
// sanitizers, which keep the forms for arrays to themselves.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* memory = std::malloc(size > 0 ? size : 1);
    if (memory != nullptr) ++aliveCount;
    return memory;
}
void* operator new(std::size_t size) {
    void* memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void operator delete(void* memory) noexcept {
    if (memory != nullptr) --aliveCount;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace {

using kvl::FileTexts;

// All projects once, and what is alive behind them.
long RunAll(const std::vector<FileTexts>& projects, std::size_t& runs) {
    for (const FileTexts& project : projects) {
        kvl::WholeRun(project).Run();
        ++runs;
    }
    kvl::ResetProcessState();
    return aliveCount;
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t wanted = argc > 1 ? static_cast<std::size_t>(std::atoi(argv[1])) : 1000;
    std::vector<FileTexts> projects;
    for (const std::filesystem::path& folder : kvl::FindCases({KVL_GOLDEN_FOLDER, KVL_EXAMPLES_FOLDER}))
        projects.push_back(kvl::ReadTree(folder));
    const auto begin = std::chrono::steady_clock::now();
    std::size_t runs = 0;
    RunAll(projects, runs);  // what is made once and kept
    const long before = RunAll(projects, runs);
    long after = before;
    while (runs < wanted)
        after = RunAll(projects, runs);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("%zu runs in %.1f s; objects alive: %ld, then %ld\n", runs, time.count(), before, after);
    return after == before ? 0 : 1;
}
