#pragma once
// How a scanner speaks of its source in messages: the kind of entity it compiles and the name shown for it. Each of the
// two scanners holds one.

#include <string>
#include <string_view>

#include "frontend/CScan.h"

namespace kvl {

struct ScannerReport {
    int entityKind = kEntityUnknown;
    std::string displayName;  // the path of a file source
    std::string displayText;  // the name of any other source, used when there is no path

    // Shows message `id` at the position of `scan`: its mark, or else the last byte fetched. False always.
    bool Report(CScan& scan, MessageId id) const;
    // The same for a fault told by a text: "Syntax error", or the reason of a fatal error.
    bool Report(CScan& scan, std::string_view text) const;

private:
    SourceContext Record(const CScan& scan) const;
};

}  // namespace kvl
