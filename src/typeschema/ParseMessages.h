#pragma once
// The messages of the input parser. Each is raised where the input was first wrong and no category around can recover;
// all return false.

#include "typeschema/CTypeSchema.h"
#include "typeschema/WeakMatch.h"

namespace kvl {

bool ReportLiteral(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportElement(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportNoAlternative(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportNoPermutation(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportTooManyOrders(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportEmptyList(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportNoTerminator(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportEmptyDistance(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportNestedElements(const CTypeSchema& schema, int row, const InputWindow& window);
bool ReportNoEndLiteral(const CTypeSchema& schema, int row, const InputWindow& window, int lineOfBegin);
bool ReportEmptyLiteral(const CTypeSchema& schema, int row, const InputWindow& window);

// The line of the window's cursor, from 1.
int LineOfCursor(const InputWindow& window);

}  // namespace kvl
