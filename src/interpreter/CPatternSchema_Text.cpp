// How literal text, placeholders and line ends become output text. A template line that holds only commands and white
// space, and on which no placeholder gave a value, leaves no trace: neither its indentation nor its line end.
#include "interpreter/CPatternSchema.h"

namespace kvl {

bool CPatternSchema::FitsInText(std::size_t size) const {
    if (size <= kLongestText) return true;
    return Fail(ERR_EXEC_ENVIRON_FATAL_1, ERRSTR_FATAL_REASON, "Text is larger than 2147483647 bytes. ");
}

bool CPatternSchema::WriteStream(int index, OutputText& output) {
    if (IsScript() || !macroText_) return true;
    const int place = macroText_->chunkOf[static_cast<std::size_t>(index)];
    if (place == -1) return true;
    const TextChunk& chunk = macroText_->chunks[static_cast<std::size_t>(place)];
    if (chunk.first.text.empty() && !chunk.hasLineEnd) return true;
    output.Append(chunk.first);
    if (chunk.hasLineEnd) WriteLineEnd(chunk, output);
    lineHasValue = false;
    return FitsInText(output.Text().size());
}

// Only the first line end of a text is judged so: between the further lines stands no command.
void CPatternSchema::WriteLineEnd(const TextChunk& chunk, OutputText& output) const {
    if (!output.IsLastLineBlank()) {
        output.Append("\r\n");
    } else if (!lineHasValue) {
        output.StripLastLine();
    }
    output.Append(chunk.rest);
}

// The mark is ink, so that the line end behind it is written as CR LF; both are removed when the macro has run, and the
// line goes on.
bool CPatternSchema::WriteNormalPlaceholder(const PatternCommand& command, OutputText& output) {
    output.Append(command.subkind == cmd_newline ? std::string_view("\n") : Process().generationMark);
    return true;
}

bool CPatternSchema::WriteIdentifierPlaceholder(int index, OutputText& output, RunContext& run) {
    if (placeholders_.empty()) placeholders_.resize(Commands().size());
    const auto place = static_cast<std::size_t>(index);
    const std::string_view name = Commands()[place].placeholderName;
    CVariable* variable = variableTable.FindOne(name, placeholders_[place]);
    if (!variable && !FindDeclaredVariable(name, variable)) return false;
    VariableText value;
    if (!ReadVariable(*variable, value, run.loops)) return false;
    const bool isNumber = value.type == kTypeInteger || value.type == kTypeFloat;
    if (isNumber && value.text.empty()) value.text = "0";
    if (value.text.empty()) return true;
    lineHasValue = true;
    output.AppendValue(value.text);
    return FitsInText(output.Text().size());
}

}  // namespace kvl
