#include "AllocationBudget.h"

#include <cstdlib>
#include <new>

namespace kvl {
namespace {

struct Budget {
    std::size_t bytes = 0, requests = 0;
    bool isSet = false;
};
Budget theBudget;

// Null for the request that goes past the budget; what tells of the failure has all it needs.
void* Allocate(std::size_t bytes) {
    if (theBudget.isSet) {
        if (theBudget.requests == 0 || bytes > theBudget.bytes) {
            theBudget.isSet = false;
            return nullptr;
        }
        --theBudget.requests;
        theBudget.bytes -= bytes;
    }
    return std::malloc(bytes != 0 ? bytes : 1);
}

}  // namespace

void SetAllocationBudget(std::size_t bytes, std::size_t requests) {
    theBudget = {bytes, requests, true};
}

void ClearAllocationBudget() {
    theBudget.isSet = false;
}

}  // namespace kvl

void* operator new(std::size_t bytes) {
    if (void* place = kvl::Allocate(bytes)) return place;
    throw std::bad_alloc();
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return kvl::Allocate(bytes);
}
void operator delete(void* place) noexcept {
    std::free(place);
}
void operator delete(void* place, std::size_t) noexcept {
    std::free(place);
}
void operator delete(void* place, const std::nothrow_t&) noexcept {
    std::free(place);
}
