#include "frontend/ScannerReport.h"

#include "text/Paths.h"

namespace kvl {

bool ScannerReport::Report(CScan& scan, MessageId id) const {
    return scan.ReportError(Record(scan), id, "");
}

bool ScannerReport::Report(CScan& scan, std::string_view text) const {
    return scan.ReportError(Record(scan), ERR_EXEC_ENVIRON_FATAL_1, text);
}

SourceContext ScannerReport::Record(const CScan& scan) const {
    SourceContext record;
    record.entityKind = entityKind;
    record.entityName = displayName.empty() ? displayText : PathPart(displayName, PathMode::Display);
    scan.GetPosition(record.lineNumber, record.position, record.lineText);
    return record;
}

}  // namespace kvl
