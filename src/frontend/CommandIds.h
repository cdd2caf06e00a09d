#pragma once
// The one numeric space of commands, kinds, operators, loop modes and static macros, and its table.

#include <span>
#include <string_view>

namespace kvl {

enum CommandId : int {
#define KVL_COMMAND(name, id, keyword, staticMacro) name = id,
#include "frontend/CommandRows.def"
#undef KVL_COMMAND
};

constexpr int kNewCommentSubkind = 42;  // has no row of its own

struct CommandRow {
    int id;
    std::string_view name;         // "cmd_begin"
    std::string_view keyword;      // "hint" where no keyword is named
    int slot;                      // -1 in every row
    std::string_view staticMacro;  // empty where the row is no static macro
};

// All rows in order of id, the last being cmd_mark_end.
std::span<const CommandRow> CommandTable();
// The symbolic name of an id; empty without a row.
std::string_view GetCommandName(int id);
// The row whose static macro has this name, or null.
const CommandRow* FindStaticMacro(std::string_view name);

}  // namespace kvl
