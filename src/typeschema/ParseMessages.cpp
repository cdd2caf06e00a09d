#include "typeschema/ParseMessages.h"

#include <string>

namespace kvl {

namespace {

DataContext ContextOf(const CTypeSchema& schema, int row, const InputWindow& window) {
    return schema.MakeParseContext(row, window.Between(window.begin, window.end), window.cursor - window.begin);
}

const CVariable& VariableOf(const CTypeSchema& schema, int row) {
    return *schema.elements[static_cast<std::size_t>(row)].variable;
}

}  // namespace

bool ReportLiteral(const CTypeSchema& schema, int row, const InputWindow& window) {
    const CVariable& variable = VariableOf(schema, row);
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_LITERAL, variable.GetText());
    context.Set(ERRSTR_LABEL_FULL, row);
    context.Set(ERRSTR_LABEL_POSITION, context.typePosition);
    return Report(variable.typeId == kLiteralStrict ? ERR_PARSE_TYPE_LIT_1 : ERR_PARSE_TYPE_LIT_2, context);
}

bool ReportElement(const CTypeSchema& schema, int row, const InputWindow& window) {
    const CVariable& variable = VariableOf(schema, row);
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_VAR_TYPE, variable.typeName);
    if (!variable.label.empty()) {
        context.Set(ERRSTR_LABEL_FULL, variable.label);
        return Report(ERR_PARSE_TYPE_ELEM_1, context);
    }
    context.Set(ERRSTR_LABEL_FULL, schema.instanceName);
    context.Set(ERRSTR_LABEL_POSITION, row);
    return Report(ERR_PARSE_TYPE_ELEM_2, context);
}

bool ReportNoAlternative(const CTypeSchema& schema, int row, const InputWindow& window) {
    const CVariable& variable = VariableOf(schema, row);
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_LABEL_FULL, variable.label);
    context.Set(ERRSTR_CATEGORY, variable.typeName);
    return Report(ERR_PARSE_TYPE_CAT_1, context);
}

bool ReportNoPermutation(const CTypeSchema& schema, int row, const InputWindow& window) {
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_FATAL_REASON, "::PERMUTATION Missmatch. ");
    return Report(ERR_EXEC_ENVIRON_FATAL_1, context);
}

bool ReportTooManyOrders(const CTypeSchema& schema, int row, const InputWindow& window) {
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_FATAL_REASON, "::PERMUTATION has more than 100000 orders that lead nowhere. ");
    return Report(ERR_EXEC_ENVIRON_FATAL_1, context);
}

bool ReportEmptyList(const CTypeSchema& schema, int row, const InputWindow& window) {
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_LIST_ID, VariableOf(schema, row).label);
    return Report(ERR_PARSE_TYPE_CAT_4, context);
}

bool ReportNoTerminator(const CTypeSchema& schema, int row, const InputWindow& window) {
    return Report(ERR_PARSE_TYPE_CAT_3, ContextOf(schema, row, window));
}

bool ReportEmptyDistance(const CTypeSchema& schema, int row, const InputWindow& window) {
    return Report(ERR_PARSE_TYPE_CAT_5, ContextOf(schema, row, window));
}

bool ReportNestedElements(const CTypeSchema& schema, int row, const InputWindow& window) {
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_CATEGORY, VariableOf(schema, row).typeName);
    return Report(ERR_DECL_TYPE_CAT_1, context);
}

bool ReportNoEndLiteral(const CTypeSchema& schema, int row, const InputWindow& window, int lineOfBegin) {
    const CVariable& variable = VariableOf(schema, row);
    DataContext context = ContextOf(schema, row, window);
    context.Set(ERRSTR_LABEL_FULL, variable.label);
    context.Set(ERRSTR_CATEGORY, variable.typeName);
    context.Set(ERRSTR_LITERAL_BEGIN, VariableOf(schema, row + 1).GetText());
    context.Set(ERRSTR_LITERAL_END, VariableOf(schema, variable.lastElement - 1).GetText());
    context.Set(ERRSTR_LINE_RELATED_NUMBER, lineOfBegin);
    return Report(ERR_PARSE_TYPE_CAT_2, context);
}

bool ReportEmptyLiteral(const CTypeSchema& schema, int row, const InputWindow& window) {
    return Report(ERR_DECL_TYPE_LIT_3, ContextOf(schema, row, window));
}

int LineOfCursor(const InputWindow& window) {
    return LocateCursor(window.Between(window.begin, window.end), window.cursor - window.begin).line;
}

}  // namespace kvl
