#pragma once
// A fault on its way to the user: built where it is found, shown at once on console and log, counted.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "messages/EntityKinds.h"
#include "messages/MessageIds.h"

namespace kvl {

// What a raiser tells about the place of a fault, and the values that the message's text names.
struct MessageContext {
    std::string entityName;          // display name of the schema or the source
    int lineNumber = -1;             // line of the fault
    std::string lineText;            // text of that line
    std::string linePath;            // or the file that holds it: read only when a message is really built
    std::string positionMark = "^";  // mark text for that line
    int position = -1;               // position in that line; -1 none
    int entityKind = kEntityUnknown;
    std::vector<std::pair<MessageParameter, std::string>> fields;  // values by name; a later one replaces an earlier

    MessageContext& Set(MessageParameter parameter, std::string_view value);
    MessageContext& Set(MessageParameter parameter, int value);
};

// A failure of input data: the common fields describe the input, these the declaration that was reading it.
struct DataContext : MessageContext {
    std::string typeName;
    int typeLineNumber = -1;
    std::string typeLine;
    std::string typePositionMark = "^";
    int typePosition = -1;
};

// A scanner's or parser's fault.
struct SourceContext : MessageContext {};

// Pairing and version faults of blocks; `fields` hold the begin and end texts.
struct BlockContext : MessageContext {
    int relatedLine = -1;  // the other block's line
};

// A fault of a type declaration.
struct TypeContext : MessageContext {};

class CMessage {
public:
    CMessage(int id, const MessageContext& context);
    CMessage(int id, const DataContext& context);
    CMessage(int id, const SourceContext& context);
    CMessage(int id, const BlockContext& context);
    CMessage(int id, const TypeContext& context);
    // A message without any place, whose reason text is `reason`.
    CMessage(int id, std::string_view reason);
    virtual ~CMessage() = default;

    // Shows the message on console and log and counts it. Once for each message.
    virtual void Report();

private:
    int id_;
};

// Builds and shows the message; returns false, so that a failing operation reads `return Report(...)`.
template <class Context>
bool Report(int id, const Context& context) {
    CMessage(id, context).Report();
    return false;
}
inline bool Report(int id, const char* reason) {
    return Report(id, std::string_view(reason));
}
// Reports what the system refused, at the place of `context` if it has one; false.
bool ReportFatal(std::string_view reason, const MessageContext& context);

// Header ("ERROR: " or "WARNING: " and the identifier; sets ERRSTR_ISWARNING) and text with the parameters' present
// values.
std::string MessageHeader(int id, std::vector<std::string>& parameters);
std::string MessageText(int id, const std::vector<std::string>& parameters);
// Every named slot gets its own tag, the double quote its character.
void ResetMessageParameters(std::vector<std::string>& parameters);
// The whole text of a message, as shown, from the present parameters.
std::string ComposeMessage(int id);

// The mark line under `line` for a 0-based column: tabs and other invisible bytes are kept, the rest is blank, then
// "^".
std::string PositionMark(std::string_view line, int column);

// Errors or warnings so far?
bool HasMessages();

}  // namespace kvl
