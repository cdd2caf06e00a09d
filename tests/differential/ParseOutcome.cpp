#include "differential/ParseOutcome.h"

#include "differential/LiteralParser.h"
#include "frontend/TypeFrontEnd.h"
#include "messages/Log.h"
#include "text/ProcessState.h"
#include "typeschema/InputParser.h"
#include "typeschema/ParseMessages.h"

namespace kvl {

namespace {

constexpr const char* kTypePath = "/home/type.txt";
constexpr const char* kLogPath = "/home/log.txt";

class NoKnownTypes final : public KnownTypes {
public:
    const CTypeSchema* FindLoadedType(std::string_view) const override { return nullptr; }
};

std::string Fact(std::string_view name, int value) {
    return std::string(name) + " " + std::to_string(value) + "\n";
}

std::string Quoted(std::string_view name, std::string_view text) {
    return std::string(name) + " |" + Printable(text) + "|\n";
}

std::string PathText(PathView path) {
    std::string text;
    for (const int number : path)
        text += " " + std::to_string(number);
    return text;
}

// All labelled lists, columns too, by label; unnamed lists have labels of their own.
template <class Visit>
void ForEachList(const CTypeSchema& schema, Visit visit) {
    for (const ElementEntry& entry : schema.elements)
        if (entry.mark == kMarkBegin && entry.variable->IsList())
            visit(static_cast<const CVariableKVLCategoryList&>(*entry.variable));
}

std::string RealRecords(const CVariableKVLCategoryList& list) {
    std::string text;
    const RecordStore& records = list.Records();
    for (auto position = records.Begin(); position != records.End(); position = records.Next(position)) {
        text += list.label + PathText(records.PathAt(position)) + "\n";
        for (std::size_t i = 0; i < list.Columns().size(); ++i)
            text += Quoted("  " + list.Columns()[i]->label,
                           list.NestedList(i) ? "$?$" : records.At(position).Get(static_cast<int>(i)));
    }
    return text;
}

std::string LiteralRecords(const LiteralParse& parse, const CVariableKVLCategoryList& list) {
    std::string text;
    for (const auto& [path, record] : parse.slots[static_cast<std::size_t>(list.firstElement)].records) {
        text += list.label + PathText(path) + "\n";
        for (const auto& [label, cell] : record.cells)
            text += Quoted("  " + label, cell);
    }
    return text;
}

}  // namespace

ParseComparison::ParseComparison() {
    ResetProcessState();
}

bool ParseComparison::SetType(std::string_view typeText) {
    outside_.memory.Put(kTypePath, typeText);
    declaration_ = ParseTypeFile(kEntityType, kTypePath);
    std::string name;
    const bool ok = declaration_ != nullptr && declaration_->CompileDeclaration(NoKnownTypes(), name);
    TakeMessages();
    return ok;
}

bool ParseComparison::Parses(std::string_view input, LogMode mode) {
    CTypeSchema& schema = FreshInstance(input);
    StartLog(mode);
    const bool ok = ParseInput(schema);
    StopLog();
    return ok;
}

std::string ParseComparison::RealOutcome(std::string_view input, LogMode mode) {
    const bool ok = Parses(input, mode);
    CTypeSchema& schema = *instance_;
    if (!ok) return "failed\n" + TakeMessages();

    std::string text = Fact("cursor", schema.input.GetCursor()) + Fact("root end", schema.rootSpanEnd);
    for (const auto& [label, variable] : schema.variables)
        text += Quoted(label, variable->GetText());
    ForEachList(schema, [&](const CVariableKVLCategoryList& list) { text += RealRecords(list); });
    text += TakeMessages();
    text += Fact("remainder", schema.FindRemainder() ? 1 : 0);
    TakeMessages();
    return text;
}

std::optional<std::string> ParseComparison::LiteralOutcome(std::string_view input, long stepBudget) {
    const CTypeSchema& schema = FreshInstance(input);
    StartLog(LogMode::Open);
    const std::optional<LiteralParse> parse = ParseLiterally(schema, input, stepBudget);
    StopLog();
    if (!parse) return std::nullopt;
    if (!parse->matched) return "failed\n" + TakeMessages();

    std::string text = Fact("cursor", parse->cursor) + Fact("root end", parse->rootEnd);
    for (const auto& [label, variable] : schema.variables)
        text += Quoted(label, parse->slots[static_cast<std::size_t>(variable->firstElement)].text);
    ForEachList(schema, [&](const CVariableKVLCategoryList& list) { text += LiteralRecords(*parse, list); });
    return text + TakeMessages() + Fact("remainder", parse->HasRemainder(input) ? 1 : 0);
}

void ParseComparison::StartLog(LogMode mode) {
    outside_.memory.Put(kLogPath, "");
    if (mode == LogMode::Open && !OpenLog(kLogPath)) std::abort();
    Process().logWriteCount = kLogWriteLimit - logRoom_;
    TakeMessages();
}

void ParseComparison::StopLog() {
    CloseLog();
    log_ = outside_.memory.Get(kLogPath);
}

CTypeSchema& ParseComparison::FreshInstance(std::string_view input) {
    instance_ = std::make_unique<CTypeSchema>();
    instance_->CopyDeclaration(*declaration_);
    if (!instance_->PrepareInstance("IN")) std::abort();  // a declaration that compiled makes an instance
    instance_->dataFile = "data.txt";
    instance_->input.SetText(std::string(input));
    return *instance_;
}

// Everything written to the console since the last time.
std::string ParseComparison::TakeMessages() {
    std::string text = Printable(outside_.console.output);
    outside_.console.output.clear();
    outside_.console.pieces.clear();
    return text.empty() ? text : text + "\n";
}

std::string Printable(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char c : bytes) {
        if (c >= ' ' && c <= '~' && c != '\\') {
            text += c;
        } else {
            const auto value = static_cast<unsigned char>(c);
            text += {'\\', 'x', kDigits[value >> 4U], kDigits[value & 15U]};
        }
    }
    return text;
}

}  // namespace kvl
