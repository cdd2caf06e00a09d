#pragma once
// The flat, ordered list that a source is compiled to, with what the parser learns about the source as a whole.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/CommandTexts.h"
#include "frontend/PatternCommand.h"

namespace kvl {

class CommandList {
public:
    std::vector<PatternCommand> commands;
    int entityKind = 13;                                                     // a macro head sets 6 or 8
    bool utf8Source = false;                                                 // the source held UTF-8 lead bytes
    std::shared_ptr<CommandTexts> texts = std::make_shared<CommandTexts>();  // what the commands look into

    // Appends the command, or joins its text to a text command before it. A cmd_begin gets its number, a macro head
    // sets the entity kind. `lineNumber` is the scanner's line.
    void AppendCommand(PatternCommand&& command, int lineNumber, bool utf8);

    // One line for each command: index, kind by name, command text (a text command: its text, line ends as "\n").
    std::string DumpCommands() const;
};

}  // namespace kvl
