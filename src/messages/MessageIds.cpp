// The catalogue in memory: rows in the order of their numbers, so that a number finds its row by its place.
#include "messages/MessageIds.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "messages/EntityKinds.h"
#include "messages/MessageTable.h"

namespace kvl {
namespace {

constexpr MessageRow kRows[] = {
#define KVL_MESSAGE(name, number, text) {#name, number, text},
#include "messages/MessageRows.def"
#undef KVL_MESSAGE
};

constexpr std::string_view kTags[] = {
#define KVL_PARAMETER(name, tag) tag,
#include "messages/ParameterRows.def"
#undef KVL_PARAMETER
};

constexpr int kHighestNumber = std::end(kRows)[-1].number;
constexpr std::string_view kUnknownName = "ERR_UNKNOWN";

constexpr bool NumbersRise() {
    for (std::size_t i = 1; i < std::size(kRows); ++i) {
        if (kRows[i - 1].number >= kRows[i].number) return false;
    }
    return true;
}
static_assert(NumbersRise(), "the rows stand in the order of their numbers");
static_assert(std::size(kTags) == kMessageParameterCount);

using TwinTable = std::array<MessageId, kHighestNumber + 1>;

// A pattern row is the twin of the script row whose name differs in that one word. Built once, at the first question.
TwinTable MakeTwinTable() {
    constexpr std::string_view kScriptWord = "_SCRIPT_", kPatternWord = "_PATTERN_";
    TwinTable twins{};
    for (const MessageRow& row : kRows) {
        twins[static_cast<std::size_t>(row.number)] = static_cast<MessageId>(row.number);
        const std::size_t word = row.name.find(kScriptWord);
        if (word == std::string_view::npos) continue;
        const std::string patternName = std::string(row.name).replace(word, kScriptWord.size(), kPatternWord);
        const auto* twin = std::find_if(std::begin(kRows), std::end(kRows),
                                        [&](const MessageRow& other) { return other.name == patternName; });
        if (twin != std::end(kRows)) twins[static_cast<std::size_t>(row.number)] = static_cast<MessageId>(twin->number);
    }
    return twins;
}

}  // namespace

const MessageRow* FindMessageRow(int id) {
    const auto* row =
        std::lower_bound(std::begin(kRows), std::end(kRows), id,
                         [](const MessageRow& candidate, int number) { return candidate.number < number; });
    return row != std::end(kRows) && row->number == id ? row : nullptr;
}

std::string_view MessageName(int id) {
    const MessageRow* row = FindMessageRow(id);
    return row != nullptr ? row->name : kUnknownName;
}

MessageId TwinFor(MessageId scriptRow, int entityKind) {
    static const TwinTable kTwins = MakeTwinTable();
    if (IsScriptKind(entityKind) || FindMessageRow(scriptRow) == nullptr) return scriptRow;
    return kTwins[static_cast<std::size_t>(scriptRow)];
}

std::string_view ParameterTag(int parameter) {
    return kTags[parameter];
}

std::string_view ParameterName(int parameter) {
    const std::string_view tag = kTags[parameter];
    return tag.substr(1, tag.size() - 2);
}

MessagePiece TakeMessagePiece(std::string_view& text) {
    for (std::size_t open = text.find('<'); open != std::string_view::npos; open = text.find('<', open + 1)) {
        const std::string_view rest = text.substr(open);
        const auto* tag = std::find_if(std::begin(kTags), std::end(kTags),
                                       [&](std::string_view candidate) { return rest.starts_with(candidate); });
        if (tag == std::end(kTags)) continue;
        const MessagePiece piece{text.substr(0, open), static_cast<int>(tag - std::begin(kTags))};
        text.remove_prefix(open + tag->size());
        return piece;
    }
    const MessagePiece last{text, kMessageParameterCount};
    text = {};
    return last;
}

bool NamesParameter(int id, MessageParameter parameter) {
    const MessageRow* row = FindMessageRow(id);
    return row == nullptr || row->text.find(ParameterTag(parameter)) != std::string_view::npos;
}

}  // namespace kvl
