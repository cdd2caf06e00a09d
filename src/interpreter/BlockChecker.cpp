// Pairs begins and ends with one stack and one pass, then judges header, footer, macro head and what stands behind the
// footer. A fault ends the check, so that a search through the open blocks happens once at most.
#include <algorithm>
#include <set>

#include "interpreter/BlockFaults.h"
#include "interpreter/ScriptLoading.h"

namespace kvl {

namespace {

constexpr std::string_view kLanguageVersion = "1.0.0";

bool SameWeakLiteral(const WeakLiteral& a, const WeakLiteral& b) {
    return a.name == b.name && a.text == b.text;
}

// Does the end close the begin? All texts are compared exactly. The negation of a condition is no part of its text.
bool Matches(const PatternCommand& begin, const PatternCommand& end) {
    const BlockKind kind = KindOfBlock(begin);
    if (kind != KindOfBlock(end)) return false;
    switch (kind) {
        case BlockKind::Version:
            return std::equal(begin.weakLiterals.begin(), begin.weakLiterals.end(), end.weakLiterals.begin(),
                              end.weakLiterals.end(), SameWeakLiteral);
        case BlockKind::Macro:
            return *begin.macroHead == *end.macroHead;
        case BlockKind::Loop:
            return *begin.loop == *end.loop;
        case BlockKind::Condition:
            return begin.condition->conditionForm == end.condition->conditionForm &&
                   begin.condition->conditionOperand == end.condition->conditionOperand &&
                   begin.sides->operand1 == end.sides->operand1 && begin.sides->operand2 == end.sides->operand2 &&
                   begin.sides->operatorId == end.sides->operatorId;
        case BlockKind::Separator:
        case BlockKind::Comment:
            return true;
    }
    return false;
}

class BlockPairing {
public:
    explicit BlockPairing(CPatternSchema& schema)
        : schema_(schema), script_(*schema.script), commands_(script_.Commands()) {
        firstHeader_ = FindVersion(cmd_begin);
        firstFooter_ = FindVersion(cmd_end);
    }

    bool Pair() {
        script_.blocks.clear();
        script_.blockEnd.assign(commands_.size(), -1);
        const auto isBegin = [](const PatternCommand& command) { return command.beginEnd == cmd_begin; };
        if (std::none_of(commands_.begin(), commands_.end(), isBegin)) {
            return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_1, 1);
        }
        for (std::size_t index = 0; index < commands_.size(); ++index) {
            if (commands_[index].beginEnd == cmd_begin) {
                if (!Open(index)) return false;
                index = BeforeEndOfVerbatim(index);
            } else if (commands_[index].beginEnd == cmd_end && !Close(index)) {
                return false;
            }
        }
        return open_.empty() || Fault(BlockFault::BeginWithoutEnd, &commands_[open_.back()], nullptr);
    }

private:
    std::size_t FindVersion(int beginEnd) const {
        const auto found = std::find_if(commands_.begin(), commands_.end(), [beginEnd](const PatternCommand& command) {
            return command.beginEnd == beginEnd && command.subkind == cmd_kvl_file_version;
        });
        return static_cast<std::size_t>(found - commands_.begin());
    }

    bool Fault(BlockFault fault, const PatternCommand* begin, const PatternCommand* end) const {
        return ReportBlockFault(schema_, fault, begin, end);
    }

    bool Open(std::size_t index) {
        const PatternCommand& command = commands_[index];
        if (command.subkind == cmd_kvl_file_version && index > firstHeader_) {
            return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_3, command.lineNumber);
        }
        open_.push_back(index);
        return true;
    }

    // Nothing is paired inside a comment or a separator: the walk goes on at the next command of that kind.
    std::size_t BeforeEndOfVerbatim(std::size_t index) const {
        const PatternCommand& command = commands_[index];
        if (command.kind != cmd_kind_begin_end_verb_stream) return index;
        while (index + 1 < commands_.size() && commands_[index + 1].subkind != command.subkind)
            ++index;
        return index;
    }

    bool Close(std::size_t index) {
        const PatternCommand& end = commands_[index];
        if (end.subkind == cmd_kvl_file_version && index > firstFooter_) {
            return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_4, end.lineNumber);
        }
        if (open_.empty()) return Fault(BlockFault::EndWithoutBegin, nullptr, &end);
        const std::size_t top = open_.back();
        if (!Matches(commands_[top], end)) return ReportMismatch(commands_[top], end);
        open_.pop_back();
        script_.blocks.push_back({commands_[top].blockId, static_cast<int>(top), static_cast<int>(index)});
        script_.blockEnd[top] = static_cast<int>(index);
        return true;
    }

    bool ReportMismatch(const PatternCommand& top, const PatternCommand& end) const {
        const bool closesDeeper = std::any_of(open_.begin(), open_.end() - 1, [&](std::size_t index) {
            return KindOfBlock(commands_[index]) != BlockKind::Comment && Matches(commands_[index], end);
        });
        if (closesDeeper) return Fault(BlockFault::ClosedByAnother, &top, &end);
        if (KindOfBlock(top) == KindOfBlock(end)) return Fault(BlockFault::DifferentTexts, &top, &end);
        return Fault(BlockFault::EndWithoutBegin, nullptr, &end);
    }

    CPatternSchema& schema_;
    CompiledScript& script_;
    const std::vector<PatternCommand>& commands_;
    std::size_t firstHeader_ = 0, firstFooter_ = 0;
    std::vector<std::size_t> open_;  // begins without their end, the innermost last
};

// What the kind of the entity asks of the paired blocks.
class StructureCheck {
public:
    explicit StructureCheck(CPatternSchema& schema)
        : schema_(schema), script_(*schema.script), commands_(script_.Commands()) {
        for (std::size_t index = 0; index < commands_.size(); ++index) {
            if (script_.blockEnd[index] == -1) continue;
            const BlockKind kind = KindOfBlock(commands_[index]);
            if (kind == BlockKind::Version) version_ = static_cast<int>(index);
            if (kind == BlockKind::Macro) macros_.push_back(static_cast<int>(index));
        }
    }

    bool Check() {
        if (version_ == -1) return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_1, 1);
        if (!NeedsMacro()) return CheckVersion();
        if (!TakeMacro() || !CheckVersion() || !CheckParameters() || !CheckNesting()) return false;
        KeepMacroNames();
        return true;
    }

private:
    const PatternCommand& At(int index) const { return commands_[static_cast<std::size_t>(index)]; }
    const PatternCommand& Head() const { return At(script_.bodyBegin); }

    bool NeedsMacro() const { return schema_.IsScript() || schema_.entityKind == kEntityMacroPattern; }

    bool TakeMacro() {
        const int wanted = schema_.IsScript() ? cmd_declare_script_macro : cmd_declare_pattern_macro;
        const auto found =
            std::find_if(macros_.begin(), macros_.end(), [&](int index) { return At(index).subkind == wanted; });
        if (found == macros_.end()) return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_6, At(version_).lineNumber);
        if (macros_.size() > 1) {
            const PatternCommand& second = At(macros_[1]);
            return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_12, second.lineNumber, &second,
                                   At(macros_[0]).lineNumber);
        }
        script_.bodyBegin = *found;
        script_.bodyEnd = script_.GetBlockEnd(*found);
        return true;
    }

    bool CheckVersion() const {
        const std::vector<WeakLiteral>& attributes = At(version_).weakLiterals;
        const bool isKnown = std::any_of(attributes.begin(), attributes.end(), [](const WeakLiteral& attribute) {
            return attribute.name == "VERSION" && attribute.text == kLanguageVersion;
        });
        return isKnown || ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_9, At(version_).lineNumber);
    }

    // A pattern changes nothing of its caller's: it takes constant references only.
    bool CheckParameters() const {
        const std::vector<FormalParameter>& parameters = Head().macroHead->formalParameters;
        for (const FormalParameter& parameter : parameters) {
            const bool isLegal = parameter.annotation == "#" || (schema_.IsScript() && parameter.annotation == "&");
            if (!isLegal) return ReportStructure(schema_, ERR_DECL_SCRIPT_PARAM_9, Head().lineNumber, &Head());
        }
        std::set<std::string_view> names;
        for (const FormalParameter& parameter : parameters) {
            if (names.insert(parameter.name).second) continue;
            return ReportStructure(schema_, ERR_DECL_SCRIPT_PARAM_5, Head().lineNumber, &Head(), -1, parameter.name);
        }
        return true;
    }

    // Version begin, macro begin, macro end, version end. Blocks that are paired cannot overlap otherwise. A pattern
    // has a message for one of the wrong orders only.
    bool CheckNesting() const {
        const int versionEnd = script_.GetBlockEnd(version_);
        if (version_ < script_.bodyBegin && script_.bodyEnd < versionEnd) return true;
        if (!schema_.IsScript() && script_.bodyBegin < versionEnd) return false;
        return ReportStructure(schema_, ERR_DECL_SCRIPT_HEADER_10, Head().lineNumber, &Head(),
                               At(versionEnd).lineNumber);
    }

    void KeepMacroNames() {
        const PatternCommand& head = Head();
        script_.macroName = head.macroHead->MacroName();
        script_.macroDeclarationText = head.commandText.substr(head.commandText.find(script_.macroName + "("));
    }

    CPatternSchema& schema_;
    CompiledScript& script_;
    const std::vector<PatternCommand>& commands_;
    int version_ = -1;
    std::vector<int> macros_;  // in the order of the source
};

// Text and comments may stand behind the footer, commands may not.
bool CheckAfterFooter(const CPatternSchema& schema) {
    const std::vector<PatternCommand>& commands = schema.Commands();
    for (auto command = commands.rbegin(); command != commands.rend(); ++command) {
        if (command->subkind == cmd_kvl_file_version) break;
        const bool mayStandThere = command->subkind == cmd_stream || command->subkind == cmd_comment ||
                                   command->kind == cmd_kind_new_comment || command->commandText.empty();
        if (!mayStandThere) return ReportStructure(schema, ERR_DECL_SCRIPT_HEADER_5, command->lineNumber);
    }
    return true;
}

}  // namespace

bool CheckBlocks(CPatternSchema& schema) {
    return BlockPairing(schema).Pair() && StructureCheck(schema).Check() && CheckAfterFooter(schema);
}

}  // namespace kvl
