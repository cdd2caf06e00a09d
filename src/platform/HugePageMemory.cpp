// Large blocks of memory in huge pages: operator new for the program. Inputs, outputs and cells of millions of records
// come in blocks of megabytes, and with pages of 4 KiB the kernel would take as long to hand these out as the program
// takes to fill them. Where the system has no huge pages to give, nothing changes. Linked into the program alone.

#include <sys/mman.h>

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kHugePage = std::size_t{2} << 20;

void* AllocateInHugePages(std::size_t size) {
    void* block = nullptr;
    if (posix_memalign(&block, kHugePage, size) != 0) return nullptr;
    (void)madvise(block, size / kHugePage * kHugePage, MADV_HUGEPAGE);
    return block;
}

}  // namespace

void* operator new(std::size_t size) {
    void* const block = size >= kHugePage ? AllocateInHugePages(size) : std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
