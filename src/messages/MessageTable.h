#pragma once
// The rows of the catalogue and the tags of the parameters, for those who compose texts from them.

#include <cstddef>
#include <string_view>

#include "messages/MessageIds.h"

namespace kvl {

struct MessageRow {
    std::string_view name;
    int number;
    std::string_view text;
};

// Null for a number that no row has.
const MessageRow* FindMessageRow(int id);

// "VAR_NAME" for ERRSTR_VAR_NAME; its tag in a text is "<VAR_NAME>".
std::string_view ParameterName(int parameter);
std::string_view ParameterTag(int parameter);

// A text as it is composed: literal bytes, and behind them a parameter (or kMessageParameterCount at the end of the
// text).
struct MessagePiece {
    std::string_view literal;
    int parameter = kMessageParameterCount;
};
// Takes the first piece off `text`. A "<...>" that is no known tag belongs to the literal bytes.
MessagePiece TakeMessagePiece(std::string_view& text);

// Does the row's text show the parameter? True for every parameter where there is no row: all are listed then.
bool NamesParameter(int id, MessageParameter parameter);

}  // namespace kvl
