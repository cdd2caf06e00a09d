#pragma once
// From the text of a type file to the trees of its declared types, handed to a CTypeSchema.

#include <memory>
#include <string>
#include <string_view>

#include "messages/CMessage.h"
#include "typeschema/CTypeSchema.h"

namespace kvl {

// Each gives a new schema when the source was accepted; it holds the declared types, not yet compiled. A rejected
// source has been reported and gives null.
std::shared_ptr<CTypeSchema> ParseTypeFile(int entityKind, std::string_view path);

// The same for a stream value's text, which is folded in place if it is UTF-8. The empty text is reported as a missing
// header in the frame of `context`.
std::shared_ptr<CTypeSchema> ParseTypeStream(int entityKind, std::string_view streamName, std::string& text,
                                             const MessageContext& context);

}  // namespace kvl
