#include "typeschema/ParseProgram.h"

#include "text/ByteClass.h"
#include "typeschema/LiteralText.h"

namespace kvl {

namespace {

std::bitset<256> InvisibleBytes() {
    std::bitset<256> bytes;
    for (unsigned i = 0; i < 256; ++i)
        bytes[i] = IsInvisible(static_cast<char>(i));
    return bytes;
}

template <class Fits>
FirstBytes BehindWhiteSpace(Fits fits) {
    static const std::bitset<256> kInvisible = InvisibleBytes();
    FirstBytes first;
    first.bytes = kInvisible;
    for (unsigned i = 0; i < 256; ++i) {
        if (fits(static_cast<char>(i))) first.bytes.set(i);
    }
    return first;
}

FirstBytes Anything() {
    FirstBytes first;
    first.bytes.set();
    first.canBeEmpty = true;
    return first;
}

// A word is read to its end whatever it begins with.
template <class Fits>
FirstBytes OfWord(Fits fits) {
    FirstBytes first = BehindWhiteSpace(fits);
    first.readsOn = true;
    return first;
}

FirstBytes FirstOfWeak(std::string_view literal) {
    if (literal.empty() || IsInvisible(literal.front())) return BehindWhiteSpace([](char) { return false; });
    return BehindWhiteSpace([c = literal.front()](char other) { return other == c; });
}

FirstBytes FirstOfLeaf(const ParseRow& row) {
    switch (row.kind) {
        case kElementStrictLiteral: {
            FirstBytes first;
            if (!row.literal.empty()) first.bytes.set(static_cast<unsigned char>(row.literal.front()));
            return first;
        }
        case kElementWeakLiteral:
            return FirstOfWeak(row.literal);
        case kElementInteger:
        case kElementFloat:
            return BehindWhiteSpace([](char c) { return IsDigit(c) || c == '+' || c == '-'; });
        case kElementBool:
            return OfWord([](char c) { return c == 'T' || c == 'F'; });
        case kElementIdentifier:
            return OfWord(IsLetter);
        case kElementWhiteSpace:
            return BehindWhiteSpace([](char) { return false; });
        default:
            return OfWord([](char) { return true; });
    }
}

bool IsLeafKind(int kind) {
    return kind >= kElementStrictLiteral;
}

}  // namespace

ParseProgram::ParseProgram(const CTypeSchema& schema) : rows_(schema.elements.size()) {
    for (int row = 0; row < Size(); ++row)
        FillRow(schema, row);
    for (int row = Size(); row-- > 0;) {
        if (schema.elements[static_cast<std::size_t>(row)].mark == kMarkEnd) continue;
        FillSilence(row);
        FillFirst(row);
    }
}

void ParseProgram::FillRow(const CTypeSchema& schema, int row) {
    CVariable* variable = schema.elements[static_cast<std::size_t>(row)].variable;
    ParseRow& filled = rows_[static_cast<std::size_t>(row)];
    filled.variable = variable;
    filled.end = row;
    if (schema.elements[static_cast<std::size_t>(row)].mark == kMarkEnd) return;
    filled.kind = variable->elementKind;
    filled.end = variable->lastElement;
    if (variable->IsList()) filled.list = static_cast<CVariableKVLCategoryList*>(variable);
    if (!variable->label.empty() && variable->ownerList) filled.column = variable->columnIndex;
    filled.showsText = !variable->label.empty() && !variable->ownerList && !variable->IsList();
    FillLiteral(filled);
    if (filled.kind != kElementLine) return;
    for (int inside = row + 1; inside < filled.end; ++inside) {
        const ElementEntry& entry = schema.elements[static_cast<std::size_t>(inside)];
        const int typeId = entry.variable->typeId;
        if (entry.mark != kMarkLeaf || typeId < kTypeString || typeId > kTypeWhiteSpace) continue;
        filled.keepsWhiteSpace = typeId == kTypeWhiteSpace;
        break;
    }
}

void ParseProgram::FillLiteral(ParseRow& row) const {
    const std::string_view declared = row.variable->GetText();
    if (row.kind == kElementStrictLiteral) {
        row.literal = StrictLiteralText(declared);
        row.jumpLength = static_cast<int>(row.literal.size());
    } else if (row.kind == kElementWeakLiteral) {
        if (!IsEmptyWeakLiteral(declared)) row.literal = WeakLiteralText(declared);
        while (row.jumpLength < static_cast<int>(row.literal.size()) &&
               !IsInvisible(row.literal[static_cast<std::size_t>(row.jumpLength)])) {
            ++row.jumpLength;
        }
    }
}

// Rows further down are done already.
void ParseProgram::FillSilence(int row) {
    ParseRow& filled = rows_[static_cast<std::size_t>(row)];
    filled.insideSilent = true;
    if (!IsLeafKind(filled.kind)) {
        for (int child = row + 1; child < filled.end; child = Behind(child)) {
            filled.insideSilent = filled.insideSilent && (*this)[child].silent;
        }
    }
    filled.silent = filled.insideSilent && !filled.showsText;
}

void ParseProgram::FillFirst(int row) {
    ParseRow& filled = rows_[static_cast<std::size_t>(row)];
    if (IsLeafKind(filled.kind)) {
        filled.first = FirstOfLeaf(filled);
        return;
    }
    filled.insideFirst = FirstOfSequence(row + 1, filled.end);
    switch (filled.kind) {
        case kElementSequence:
        case kElementRecursion:
            filled.first = filled.insideFirst;
            break;
        case kElementList:
            filled.first = filled.insideFirst;
            filled.first.readsOn = false;
            break;
        case kElementOption:
            filled.first = filled.insideFirst;
            filled.first.canBeEmpty = true;
            filled.first.readsOn = false;
            break;
        case kElementChoice:
        case kElementPermutation:
            filled.first = FirstOfAny(row + 1, filled.end);
            break;
        case kElementNested:
            filled.first = FirstOfWeak(BareLiteralText((*this)[row + 1].variable->GetText()));
            break;
        default:
            filled.first = Anything();
    }
}

FirstBytes ParseProgram::FirstOfSequence(int from, int to) const {
    FirstBytes first;
    for (int child = from; child < to; child = Behind(child)) {
        first.bytes |= (*this)[child].first.bytes;
        first.readsOn = first.readsOn || (*this)[child].first.readsOn;
        if (!(*this)[child].first.canBeEmpty) return first;
    }
    first.canBeEmpty = true;
    return first;
}

FirstBytes ParseProgram::FirstOfAny(int from, int to) const {
    FirstBytes first;
    bool any = false;
    for (int child = from; child < to; child = Behind(child)) {
        first.bytes |= (*this)[child].first.bytes;
        first.canBeEmpty = first.canBeEmpty || (*this)[child].first.canBeEmpty;
        any = true;
    }
    return any ? first : Anything();
}

}  // namespace kvl
