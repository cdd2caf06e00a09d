#include "text/ProcessState.h"

namespace kvl {

ProcessState& Process() {
    static ProcessState state;
    return state;
}

void ResetProcessState() {
    Process() = ProcessState();
}

}  // namespace kvl
