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

const std::bitset<256> kInvisible = InvisibleBytes();

// What begins with white space.
FirstBytes OfWhiteSpace() {
    FirstBytes first;
    first.bytes = kInvisible;
    return first;
}

template <class Fits>
FirstBytes BehindWhiteSpace(Fits fits) {
    FirstBytes first;
    first.behindWhiteSpace = true;
    for (unsigned i = 0; i < 256; ++i) {
        if (!kInvisible[i] && fits(static_cast<char>(i))) first.bytes.set(i);
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
    if (literal.empty() || IsInvisible(literal.front())) return OfWhiteSpace();
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
            return OfWhiteSpace();
        default:
            return OfWord([](char) { return true; });
    }
}

FirstBytes FirstOfSequence(const ParseRow& category) {
    FirstBytes first;
    first.canBeEmpty = true;
    for (const ParseRow* child = category.Inside(); child < category.InsideEnd(); child = child->Behind()) {
        if (child == category.Inside()) {
            first = child->first;
        } else {
            first.canBeEmpty = false;
            first.Join(child->first);
        }
        if (!first.canBeEmpty) break;
    }
    return first;
}

FirstBytes FirstOfAny(const ParseRow& category) {
    if (category.Inside() == category.InsideEnd()) return Anything();
    FirstBytes first = category.Inside()->first;
    for (const ParseRow* child = category.Inside()->Behind(); child < category.InsideEnd(); child = child->Behind())
        first.Join(child->first);
    return first;
}

// A line begins at the first visible byte, and an attempt leaves all of it behind, even where its elements match
// nothing.
FirstBytes FirstOfLine(const ParseRow& line) {
    if (line.keepsWhiteSpace || line.insideFirst.canBeEmpty) return Anything();
    FirstBytes first = line.insideFirst;
    first.behindWhiteSpace = true;
    first.readsOn = true;
    return first;
}

}  // namespace

ParseProgram::ParseProgram(const CTypeSchema& schema) : rows_(schema.elements.size()) {
    for (int row = 0; row < Size(); ++row)
        FillRow(schema, row);
    for (ParseRow& row : rows_)
        row.last = &(*this)[row.end];
    for (int row = Size(); row-- > 0;) {
        if (schema.elements[static_cast<std::size_t>(row)].mark == kMarkEnd) continue;
        FillSilence(row);
        FillFirst(row);
        ParseRow& filled = rows_[static_cast<std::size_t>(row)];
        filled.reading = ReadingOf(filled);
        filled.insidePlain = IsInsidePlain(filled);
        filled.isMereChoice = filled.kind == kElementChoice && filled.silent && filled.column < 0 &&
                              filled.Inside() != filled.InsideEnd();
    }
}

void ParseProgram::FillRow(const CTypeSchema& schema, int row) {
    CVariable* variable = schema.elements[static_cast<std::size_t>(row)].variable;
    ParseRow& filled = rows_[static_cast<std::size_t>(row)];
    filled.variable = variable;
    filled.number = row;
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
    if (!filled.IsLeaf()) {
        for (int child = row + 1; child < filled.end; child = Behind(child)) {
            filled.insideSilent = filled.insideSilent && (*this)[child].silent;
        }
    }
    filled.silent = filled.insideSilent && !filled.showsText;
}

void ParseProgram::FillFirst(int row) {
    ParseRow& filled = rows_[static_cast<std::size_t>(row)];
    if (filled.IsLeaf()) {
        filled.first = FirstOfLeaf(filled);
        return;
    }
    filled.insideFirst = FirstOfSequence(filled);
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
            filled.first = FirstOfAny(filled);
            break;
        case kElementNested:
            filled.first = FirstOfWeak(BareLiteralText((*this)[row + 1].variable->GetText()));
            break;
        case kElementLine:
            filled.first = FirstOfLine(filled);
            break;
        default:
            filled.first = Anything();
    }
}

// Rows further down are done already.
Reading ParseProgram::ReadingOf(const ParseRow& row) {
    if (row.IsLiteral()) {
        const bool isBytes = !row.literal.empty() && row.jumpLength == static_cast<int>(row.literal.size());
        return isBytes ? Reading::Bytes : Reading::SpacedLiteral;
    }
    if (row.IsLeaf()) return Reading::Token;
    const bool isText = row.kind == kElementDistance || row.kind == kElementStream;
    const bool endsAtBytes = row.number > 0 && isText && row.Inside()->reading == Reading::Bytes &&
                             row.Inside()->Behind() == row.InsideEnd();
    return endsAtBytes ? Reading::TextToBytes : Reading::Trial;
}

bool ParseProgram::IsInsidePlain(const ParseRow& row) {
    if (row.Inside() >= row.InsideEnd()) return false;
    for (const ParseRow* inside = row.Inside(); inside < row.InsideEnd(); inside = inside->Behind()) {
        if (!inside->IsPlain()) return false;
    }
    return true;
}

void FirstBytes::Join(FirstBytes other) {
    if (behindWhiteSpace != other.behindWhiteSpace) {
        (behindWhiteSpace ? *this : other).bytes |= kInvisible;
        behindWhiteSpace = false;
    }
    bytes |= other.bytes;
    canBeEmpty = canBeEmpty || other.canBeEmpty;
    readsOn = readsOn || other.readsOn;
}

}  // namespace kvl
