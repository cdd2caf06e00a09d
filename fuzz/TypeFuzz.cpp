// Any bytes as the text of a type: parsed, compiled and dumped.
#include <cstddef>
#include <cstdint>
#include <string>

#include "frontend/TypeFrontEnd.h"
#include "support/TestPlatform.h"
#include "text/ProcessState.h"

namespace {

class NoKnownTypes final : public kvl::KnownTypes {
public:
    const kvl::CTypeSchema* FindLoadedType(std::string_view) const override { return nullptr; }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const kvl::ScopedPlatform outside;
    kvl::ResetProcessState();
    std::string text(data, data + size);
    const auto schema = kvl::ParseTypeStream(kvl::kEntityType, "FUZZ", text, kvl::MessageContext());
    if (schema == nullptr) return 0;
    std::string name;
    if (schema->CompileDeclaration(NoKnownTypes(), name)) static_cast<void>(schema->ElementsText());
    return 0;
}
