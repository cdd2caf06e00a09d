#include "values/ElementaryVariables.h"

namespace kvl {

std::string CVariableKVLStream::DumpValue(const LoopStack&) const {
    if (ownerList) return {};
    return label + "::" + typeName + "\n" + std::string(GetText()) + "\n";
}

}  // namespace kvl
