#include "interpreter/BuiltIns.h"

#include <cassert>

namespace kvl {

namespace {

BuiltIns* theBuiltIns = nullptr;

}  // namespace

BuiltIns& TheBuiltIns() {
    assert(theBuiltIns != nullptr);
    return *theBuiltIns;
}

void SetBuiltIns(BuiltIns* builtIns) {
    theBuiltIns = builtIns;
}

}  // namespace kvl
