#include "frontend/CommandIds.h"

#include <algorithm>
#include <iterator>

#include "typeschema/OperatorIds.h"

namespace kvl {

namespace {

constexpr CommandRow kCommandRows[] = {
#define KVL_COMMAND(name, id, keyword, staticMacro) {id, #name, keyword, -1, staticMacro},
#include "frontend/CommandRows.def"
#undef KVL_COMMAND
};

// Lookups by id search the sorted rows; no id stands twice.
static_assert(std::ranges::adjacent_find(kCommandRows, std::ranges::greater_equal{}, &CommandRow::id) ==
              std::end(kCommandRows));
static_assert(std::rbegin(kCommandRows)->id == cmd_mark_end);
// Values are computed below this folder, by the same numbers.
static_assert(int{cmd_operator_assign} == int{kOperatorAssign} && int{cmd_operator_modulo} == int{kOperatorModulo} &&
              int{cmd_operator_equal} == int{kOperatorEqual} && int{cmd_operator_gte} == int{kOperatorGte});

}  // namespace

std::span<const CommandRow> CommandTable() {
    return kCommandRows;
}

std::string_view GetCommandName(int id) {
    const auto* row = std::ranges::lower_bound(kCommandRows, id, {}, &CommandRow::id);
    return row != std::end(kCommandRows) && row->id == id ? row->name : std::string_view();
}

const CommandRow* FindStaticMacro(std::string_view name) {
    if (name.empty()) return nullptr;
    const auto* row = std::ranges::find(kCommandRows, name, &CommandRow::staticMacro);
    return row != std::end(kCommandRows) ? row : nullptr;
}

}  // namespace kvl
