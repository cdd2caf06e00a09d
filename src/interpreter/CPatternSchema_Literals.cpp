// The text of a literal that may hold placeholders, from the pieces it was compiled to.
#include <algorithm>

#include "interpreter/CPatternSchema.h"

namespace kvl {

namespace {

// What a placeholder of a literal may show.
bool IsElementary(int typeId) {
    switch (typeId) {
        case kTypeStream:
        case kTypeString:
        case kTypeInteger:
        case kTypeFloat:
        case kTypeBool:
        case kTypeIdentifier:
        case kTypeWhiteSpace:
        case kCategoryStream:
        case kCategoryDistance:
        case kCategorySequence:
        case kCategoryChoice:
        case kCategoryOption:
            return true;
        default:
            return false;
    }
}

// Joins the pieces of one literal.
class PieceJoiner {
public:
    PieceJoiner(CPatternSchema& schema, RunContext& run) : schema_(schema), run_(run) {}

    [[nodiscard]] bool Add(const LiteralPiece& piece) {
        switch (piece.kind) {
            case cmd_kind_stream:
                return AddText(piece.text);
            case cmd_kind_placeholder_normal:
                return piece.subkind != cmd_newline || AddText("\n");  // the other mark has no text
            case cmd_kind_placeholder_identifier:
                return AddVariable(piece.name);
            case cmd_kind_macro:
                return AddMacro(piece);
            default:
                return true;
        }
    }
    std::string Take() { return std::move(text_); }

private:
    bool AddVariable(std::string_view name) {
        VariableText value;
        if (!schema_.GetVariableText(name, value, run_.loops)) return false;
        if (!IsElementary(value.type)) return schema_.Fail(ERR_DECL_SCRIPT_LIT_3);
        return AddText(value.text);
    }

    bool AddMacro(const LiteralPiece& piece) {
        std::string_view object, method;
        CVariable* macro = schema_.FindGlobal(piece.macroName, object, method);
        if (!macro || macro->typeId == kTypeType) {
            return schema_.Fail(ERR_DECL_SCRIPT_MACRO_1, ERRSTR_MACRO_NAME, piece.macroName);
        }
        if (macro->typeId == kTypeScript) return schema_.Fail(ERR_DECL_SCRIPT_LIT_4);
        std::string result;
        return schema_.CallForText(*macro, CallArguments(piece.arguments), object, method, result, run_) &&
               AddText(result);
    }

    bool AddText(std::string_view text) {
        if (!schema_.FitsInText(text_.size() + text.size())) return false;
        text_ += text;
        return true;
    }

    CPatternSchema& schema_;
    RunContext& run_;
    std::string text_;
};

}  // namespace

bool CPatternSchema::EvaluateWeakLiteral(const std::vector<WeakLiteral>& literals, std::string_view name,
                                         std::string& text, RunContext& run) {
    const auto literal =
        std::find_if(literals.begin(), literals.end(), [name](const WeakLiteral& entry) { return entry.name == name; });
    if (literal == literals.end()) return true;
    PieceJoiner joiner(*this, run);
    for (const LiteralPiece& piece : literal->pieces) {
        if (!joiner.Add(piece)) return false;
    }
    text = joiner.Take();
    return true;
}

}  // namespace kvl
