#pragma once
// The identifiers of all messages and of their parameters. Both come from the one table of rows in MessageRows.def and
// ParameterRows.def.

#include <string_view>

namespace kvl {

// The number of a message. The name tells severity, phase, subject and group; the number never changes.
enum MessageId : int {
#define KVL_MESSAGE(name, number, text) name = number,
#include "messages/MessageRows.def"
#undef KVL_MESSAGE
};

// Index of a parameter in vectorMessageParameters.
enum MessageParameter : int {
#define KVL_PARAMETER(name, tag) ERRSTR_##name,
#include "messages/ParameterRows.def"
#undef KVL_PARAMETER
    kMessageParameterCount
};

// The row for an entity of the given kind: the pattern twin of a script row for a pattern, the row itself for scripts
// and where there is no twin.
MessageId TwinFor(MessageId scriptRow, int entityKind);

// "ERR_DECL_SCRIPT_VAR_5"; "ERR_UNKNOWN" for an id outside the table.
std::string_view MessageName(int id);

}  // namespace kvl
