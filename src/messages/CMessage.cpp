// How a fault becomes a text: the parameters are filled from its place, the row's text is written piece by piece around
// their values. Nothing is searched for in a value, so data that looks like a tag is shown as it stands.
#include "messages/CMessage.h"

#include <algorithm>

#include "messages/FileReports.h"
#include "messages/Log.h"
#include "messages/MessageTable.h"
#include "text/ByteClass.h"
#include "text/Numbers.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr std::size_t kParameterSlots = 58;
constexpr int kErrorColour = 12, kWarningColour = 14;
constexpr std::string_view kNoPosition = "-1", kNoPlace = "-2";
constexpr std::string_view kDataEntity = "Data";

using Parameters = std::vector<std::string>;

constexpr std::size_t Slot(int parameter) {
    return static_cast<std::size_t>(parameter);
}

Parameters& FreshParameters() {
    Parameters& parameters = Process().vectorMessageParameters;
    ResetMessageParameters(parameters);
    return parameters;
}

std::string_view EntityTypeOf(int entityKind) {
    if (IsScriptKind(entityKind)) return "Script";
    return entityKind == kEntityMacroPattern ? "Pattern" : "Unknown";
}

// A scanner speaks of a type, a script or else a pattern.
std::string_view SourceTypeOf(int entityKind) {
    if (entityKind == kEntityType) return "Type";
    return IsScriptKind(entityKind) ? "Script" : "Pattern";
}

// Most places are handed down and never shown, so that a line of a file is read here and not by who tells the place. A
// file that cannot be read any more has its own message first.
std::string LineTextOf(const MessageContext& context) {
    std::string text = context.lineText;
    if (context.linePath.empty()) return text;
    if (!ReadSourceLine(context.linePath, context.lineNumber, text, MessageContext())) text.clear();
    return text;
}

void FillPlace(Parameters& parameters, std::string_view entityType, const MessageContext& context) {
    parameters[ERRSTR_ENTITYTYPE] = entityType;
    parameters[ERRSTR_ENTITYNAME] = context.entityName;
    parameters[ERRSTR_ENTITYLINENUMBER] = IntegerText(context.lineNumber);
    parameters[ERRSTR_ENTITYLINEPOSITIONMARK] = context.positionMark;
    parameters[ERRSTR_ENTITYLINEPOSITION] = IntegerText(context.position);
}

// A field that the message does not show stays out, so that one context serves many messages.
void FillFields(Parameters& parameters, int id, const MessageContext& context) {
    for (const auto& [parameter, value] : context.fields) {
        if (NamesParameter(id, parameter)) parameters[Slot(parameter)] = value;
    }
}

void Fill(int id, std::string_view entityType, const MessageContext& context) {
    const std::string lineText = LineTextOf(context);
    Parameters& parameters = FreshParameters();
    FillPlace(parameters, entityType, context);
    parameters[ERRSTR_ENTITYLINE] = lineText;
    FillFields(parameters, id, context);
}

std::string UnknownMessageText(const Parameters& parameters) {
    std::string text = "Wrong Error Identifier!\n";
    for (int parameter = 0; parameter < kMessageParameterCount; ++parameter) {
        text.append("vectorMessageParameters[ERRSTR_").append(ParameterName(parameter)).append("] = ");
        text.append(parameters[Slot(parameter)]).append("\n");
    }
    return text;
}

// The source line, a "^" under the position, and where that is.
void AppendPlace(std::string& text, const Parameters& parameters) {
    const std::string& position = parameters[ERRSTR_ENTITYLINEPOSITION];
    text.append(parameters[ERRSTR_ENTITYLINE]).append("\n");
    const bool hasPosition = position != kNoPosition;
    if (hasPosition) text.append(static_cast<std::size_t>(std::max(0, ReadInteger(position))), ' ');
    text.append("^\nAt line ").append(parameters[ERRSTR_ENTITYLINENUMBER]);
    if (hasPosition) text.append(" near position ").append(position);
    text.append(" of ").append(parameters[ERRSTR_ENTITYTYPE]);
    text.append(" ").append(parameters[ERRSTR_ENTITYNAME]).append("\n\n");
}

// The declaration that was reading the data.
void AppendDeclaration(std::string& text, const Parameters& parameters) {
    text.append(parameters[ERRSTR_USERTYPELINE]).append("\n");
    text.append(parameters[ERRSTR_USERTYPELINEPOSITIONMARK]).append("\n");
    text.append("Declared at line ").append(parameters[ERRSTR_USERTYPELINENUMBER]);
    text.append(" near position ").append(parameters[ERRSTR_USERTYPELINEPOSITION]);
    text.append(" of type ").append(parameters[ERRSTR_USERTYPENAME]).append("\n\n");
}

}  // namespace

MessageContext& MessageContext::Set(MessageParameter parameter, std::string_view value) {
    for (auto& field : fields) {
        if (field.first == parameter) {
            field.second = value;
            return *this;
        }
    }
    fields.emplace_back(parameter, value);
    return *this;
}

MessageContext& MessageContext::Set(MessageParameter parameter, int value) {
    return Set(parameter, std::string_view(IntegerText(value)));
}

CMessage::CMessage(int id, const MessageContext& context) : id_(id) {
    Fill(id, EntityTypeOf(context.entityKind), context);
}

CMessage::CMessage(int id, const DataContext& context) : id_(id) {
    Fill(id, kDataEntity, context);
    Parameters& parameters = Process().vectorMessageParameters;
    parameters[ERRSTR_USERTYPENAME] = context.typeName;
    parameters[ERRSTR_USERTYPELINENUMBER] = IntegerText(context.typeLineNumber);
    parameters[ERRSTR_USERTYPELINE] = context.typeLine;
    parameters[ERRSTR_USERTYPELINEPOSITIONMARK] = context.typePositionMark;
    parameters[ERRSTR_USERTYPELINEPOSITION] = IntegerText(context.typePosition);
}

CMessage::CMessage(int id, const SourceContext& context) : id_(id) {
    Fill(id, SourceTypeOf(context.entityKind), context);
}

CMessage::CMessage(int id, const BlockContext& context) : id_(id) {
    Fill(id, EntityTypeOf(context.entityKind), context);
    if (context.relatedLine != -1 && NamesParameter(id, ERRSTR_LINE_RELATED_NUMBER)) {
        Process().vectorMessageParameters[ERRSTR_LINE_RELATED_NUMBER] = IntegerText(context.relatedLine);
    }
}

CMessage::CMessage(int id, const TypeContext& context) : id_(id) {
    Fill(id, "Type", context);
}

CMessage::CMessage(int id, std::string_view reason) : id_(id) {
    Parameters& parameters = FreshParameters();
    parameters[ERRSTR_ENTITYTYPE].clear();
    parameters[ERRSTR_FATAL_REASON] = reason;
    parameters[ERRSTR_ENTITYLINEPOSITION] = kNoPlace;
}

void CMessage::Report() {
    ProcessState& process = Process();
    const std::string text = ComposeMessage(id_);
    const bool isWarning = !process.vectorMessageParameters[ERRSTR_ISWARNING].empty();
    ++(isWarning ? process.warningCount : process.errorCount);
    PrintColoured(text, isWarning ? kWarningColour : kErrorColour);
    WriteLog(text);
}

std::string MessageHeader(int id, std::vector<std::string>& parameters) {
    const std::string_view name = MessageName(id);
    const bool isWarning = name.starts_with("WARN_");
    parameters[ERRSTR_ISWARNING] = isWarning ? "TRUE" : "";
    return std::string(isWarning ? "WARNING: " : "ERROR: ").append(name);
}

std::string MessageText(int id, const std::vector<std::string>& parameters) {
    const MessageRow* row = FindMessageRow(id);
    if (row == nullptr) return UnknownMessageText(parameters);
    std::string text;
    for (std::string_view rest = row->text; !rest.empty();) {
        const MessagePiece piece = TakeMessagePiece(rest);
        text.append(piece.literal);
        if (piece.parameter != kMessageParameterCount) text.append(parameters[Slot(piece.parameter)]);
    }
    return text;
}

void ResetMessageParameters(std::vector<std::string>& parameters) {
    parameters.assign(kParameterSlots, std::string());
    for (int parameter = 0; parameter < kMessageParameterCount; ++parameter) {
        parameters[Slot(parameter)] = ParameterTag(parameter);
    }
    parameters[ERRSTR_DOUBLEQUOTE] = "\"";
}

std::string ComposeMessage(int id) {
    Parameters& parameters = Process().vectorMessageParameters;
    std::string text = "\n" + MessageHeader(id, parameters) + "\n" + MessageText(id, parameters) + "\n\n";
    if (parameters[ERRSTR_ENTITYLINEPOSITION] != kNoPlace) AppendPlace(text, parameters);
    if (parameters[ERRSTR_ENTITYTYPE] == kDataEntity) AppendDeclaration(text, parameters);
    return text;
}

std::string PositionMark(std::string_view line, int column) {
    std::string mark;
    for (char c : line.substr(0, static_cast<std::size_t>(std::max(0, column))))
        mark += IsInvisible(c) ? c : ' ';
    return mark + "^";
}

bool ReportFatal(std::string_view reason, const MessageContext& context) {
    if (context.entityName.empty()) return Report(ERR_EXEC_ENVIRON_FATAL_1, reason);
    MessageContext filled = context;
    filled.Set(ERRSTR_FATAL_REASON, reason);
    return Report(ERR_EXEC_ENVIRON_FATAL_1, filled);
}

bool HasMessages() {
    return Process().warningCount != 0 || Process().errorCount != 0;
}

}  // namespace kvl
