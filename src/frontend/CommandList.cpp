#include "frontend/CommandList.h"

#include <utility>

#include "messages/EntityKinds.h"
#include "text/ProcessState.h"
#include "text/Replace.h"

namespace kvl {

void CommandList::AppendCommand(PatternCommand&& command, int lineNumber, bool utf8) {
    utf8Source = utf8;
    if (command.subkind == cmd_stream && !commands.empty() && commands.back().subkind == cmd_stream) {
        commands.back().streamText += command.streamText;
        return;
    }
    command.lineNumber = lineNumber;
    if (command.beginEnd == cmd_begin) command.blockId = Process().nextBlockId++;
    if (command.subkind == cmd_declare_script_macro) entityKind = kEntityMacroScript;
    if (command.subkind == cmd_declare_pattern_macro) entityKind = kEntityMacroPattern;
    commands.push_back(std::move(command));
}

std::string CommandList::DumpCommands() const {
    std::string dump;
    for (std::size_t index = 0; index < commands.size(); ++index) {
        const PatternCommand& command = commands[index];
        const std::string_view text = command.kind == cmd_kind_stream ? command.streamText : command.commandText;
        dump += std::to_string(index) + ' ';
        dump += GetCommandName(command.kind);
        dump += ' ' + ReplaceAll(text, "\n", "\\n") + '\n';
    }
    return dump;
}

}  // namespace kvl
