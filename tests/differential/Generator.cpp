#include "differential/Generator.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "text/ByteClass.h"
#include "values/TypeIds.h"

namespace kvl {

namespace {

constexpr std::size_t kDeepest = 5;
constexpr int kMostElementsOfType = 24;

constexpr std::string_view kVisible[] = {"a",    "a", "b", "b", ";", ";", ",",    "(",  ")",
                                         "\xE4", "1", "2", "+", "-", ".", "TRUE", "ab", "_"};
constexpr std::string_view kWhite[] = {" ", " ", " ", "  ", "\n", "\r\n", "\t", "\x80"};

struct WeightedType {
    int typeId;
    std::size_t weight;
};
constexpr WeightedType kWeights[] = {
    {kCategorySequence, 8},
    {kCategoryOption, 8},
    {kCategoryLine, 6},
    {kCategoryNested, 6},
    {kCategoryChoice, 8},
    {kCategoryList, 12},
    {kCategoryStream, 5},
    {kCategoryPermutation, 6},
    {kCategoryDistance, 8},
    // those without children; kLeaves tells where they begin
    {kLiteralStrict, 11},
    {kLiteralWeak, 16},
    {kTypeString, 12},
    {kTypeInteger, 6},
    {kTypeFloat, 4},
    {kTypeBool, 3},
    {kTypeIdentifier, 6},
    {kTypeWhiteSpace, 6},
};
constexpr std::size_t kLeaves = 9;

int PickType(RandomNumbers& random, std::size_t first, std::size_t behind) {
    std::size_t sum = 0;
    for (std::size_t i = first; i < behind; ++i)
        sum += kWeights[i].weight;
    std::size_t chosen = random.Below(sum);
    std::size_t row = first;
    while (chosen >= kWeights[row].weight)
        chosen -= kWeights[row++].weight;
    return kWeights[row].typeId;
}

// Now and then a byte of any value.
std::string PickPiece(RandomNumbers& random, std::size_t percentVisible) {
    if (random.Chance(2)) return std::string(1, static_cast<char>(random.Below(256)));
    return std::string(random.Chance(percentVisible) ? kVisible[random.Below(std::size(kVisible))]
                                                     : kWhite[random.Below(std::size(kWhite))]);
}

std::string PickWhite(RandomNumbers& random) {
    return PickPiece(random, 0);
}

// --- types ---

class TypeMaker {
public:
    explicit TypeMaker(RandomNumbers& random) : random_(random) {}

    TypeNode MakeRoot() { return MakeCategory(PickType(random_, 0, kLeaves), 1); }

private:
    TypeNode MakeElement(std::size_t depth) {
        const bool leaf = depth >= kDeepest || elements_ >= kMostElementsOfType;
        const int typeId = PickType(random_, leaf ? kLeaves : 0, std::size(kWeights));
        if (typeId == kLiteralStrict || typeId == kLiteralWeak) return MakeLiteral(typeId);
        TypeNode node{typeId, {}, {}, {}};
        if (IsCategoryType(typeId)) node = MakeCategory(typeId, depth);
        // The first letter mixes the order of labels.
        if (random_.Chance(65)) node.name = std::string(1, "AMZ"[random_.Below(3)]) + std::to_string(++elements_);
        return node;
    }

    TypeNode MakeCategory(int typeId, std::size_t depth) {
        TypeNode node{typeId, {}, {}, {}};
        ++elements_;
        std::size_t count = random_.Below(4) + (random_.Chance(93) ? 1 : 0);
        if (typeId == kCategoryChoice) count = std::max<std::size_t>(count, 1);
        if (typeId == kCategoryNested) {
            node.children.push_back(MakeLiteral(random_.Chance(70) ? kLiteralWeak : kLiteralStrict));
            if (random_.Chance(60)) count = 0;
        }
        for (std::size_t i = 0; i < count; ++i)
            node.children.push_back(MakeElement(depth + 1));
        if (typeId == kCategoryNested) node.children.push_back(MakeEndLiteral(node.children.front()));
        return node;
    }

    // Often equal to the begin literal, or longer by what overlaps with it.
    TypeNode MakeEndLiteral(const TypeNode& begin) {
        TypeNode end = MakeLiteral(begin.typeId);
        if (random_.Chance(15)) end.literal = begin.literal;
        if (random_.Chance(15)) end.literal.insert(1, begin.literal.substr(1, begin.literal.size() - 2));
        return end;
    }

    TypeNode MakeLiteral(int typeId) {
        ++elements_;
        const char quote = typeId == kLiteralStrict ? '"' : '\'';
        std::string text;
        for (std::size_t parts = random_.Chance(70) ? 1 : 2 + random_.Below(2); parts > 0; --parts)
            text += random_.Chance(84) ? kVisible[random_.Below(std::size(kVisible))]
                                       : kWhite[random_.Below(std::size(kWhite))];
        if (random_.Chance(3)) text += std::string(2, quote);
        if (random_.Chance(3)) text += "\\n";
        return {typeId, {}, quote + text + quote, {}};
    }

    RandomNumbers& random_;
    int elements_ = 0;
};

void AppendPieces(const TypeNode& node, std::vector<std::string>& pieces) {
    if (!node.literal.empty()) return pieces.push_back(node.literal);
    const bool isWhiteSpace = node.typeId == kTypeWhiteSpace;
    pieces.push_back(node.name + "::" + (isWhiteSpace ? "WHITESPACES" : std::string(GetTypeName(node.typeId))));
    if (!IsCategoryType(node.typeId)) return;
    pieces.back() += "{";
    for (const TypeNode& child : node.children)
        AppendPieces(child, pieces);
    pieces.emplace_back("}");
}

// --- inputs ---

class InputMaker {
public:
    explicit InputMaker(RandomNumbers& random) : random_(random), longest_(random.Chance(15) ? 250 : 50) {}

    void AppendNoise(std::string& text, std::size_t most) {
        for (std::size_t count = random_.Below(most + 1); count > 0; --count)
            text += PickPiece(random_, 70);
    }

    void Append(const TypeNode& node, std::string& text) {
        if (!IsCategoryType(node.typeId)) return AppendLeaf(node, text);
        std::vector<TypeNode> children = node.children;
        std::size_t count = 1;
        if (node.typeId == kCategoryChoice) children = {children[random_.Below(children.size())]};
        if (node.typeId == kCategoryPermutation) Shuffle(children);
        if (node.typeId == kCategoryOption) count = random_.Chance(60) ? 1 : 0;
        if (node.typeId == kCategoryList) count = 1 + random_.Below(random_.Chance(15) ? 16 : 3);
        if (node.typeId == kCategoryNested) children.pop_back();
        if (node.typeId == kCategoryDistance || node.typeId == kCategoryStream) AppendNoise(text, 6);
        const std::size_t longest = node.typeId == kCategoryList ? longest_ : std::string::npos;
        for (; count > 0 && text.size() < longest; --count)
            for (const TypeNode& child : children)
                Append(child, text);
        if (node.typeId == kCategoryNested) AppendInsideOfBracket(node, text);
        if (node.typeId != kCategoryLine) return;
        if (random_.Chance(30)) AppendNoise(text, 2);
        text += random_.Chance(80) ? "\n" : "\r\n";
    }

    // A few bytes gone, doubled, exchanged or put in.
    void Disturb(std::string& text) {
        for (std::size_t count = 1 + random_.Below(3); count > 0; --count) {
            const std::size_t at = random_.Below(text.size() + 1);
            const std::string piece = text.substr(at, 1 + random_.Below(3));
            const bool removes = random_.Chance(55);
            if (removes) text.erase(at, piece.size());
            if (!removes && random_.Chance(40)) text.insert(at, piece);
            if (random_.Chance(45)) text.insert(at, PickPiece(random_, 60));
        }
    }

private:
    void Shuffle(std::vector<TypeNode>& children) {
        for (std::size_t i = children.size(); i > 1; --i)
            std::swap(children[i - 1], children[random_.Below(i)]);
    }

    void AppendInsideOfBracket(const TypeNode& node, std::string& text) {
        AppendNoise(text, 4);
        if (random_.Chance(25)) {
            Append(node.children.front(), text);
            AppendNoise(text, 2);
            Append(node.children.back(), text);
        }
        Append(node.children.back(), text);
    }

    void AppendLeaf(const TypeNode& node, std::string& text) {
        if (node.typeId != kLiteralStrict && node.typeId != kTypeWhiteSpace && random_.Chance(45))
            text += PickWhite(random_);
        const bool isNumber = node.typeId == kTypeInteger || node.typeId == kTypeFloat;
        if (!node.literal.empty()) AppendLiteral(node.literal, text);
        if (isNumber)
            text += (random_.Chance(70) ? "" : random_.Chance(50) ? "+" : "-") + std::to_string(random_.Below(30));
        if (node.typeId == kTypeFloat && random_.Chance(60)) text += random_.Chance(80) ? ".5" : ".";
        if (node.typeId == kTypeBool) text += random_.Chance(50) ? "TRUE" : "FALSE";
        if (node.typeId == kTypeIdentifier) text += random_.Chance(80) ? "a1" : "_b";
        if (node.typeId == kTypeWhiteSpace) text += PickWhite(random_);
        if (node.typeId != kTypeString) return;
        for (std::size_t count = 1 + random_.Below(2); count > 0; --count)
            text += PickPiece(random_, 100);
        if (random_.Chance(60)) text += " ";
    }

    void AppendLiteral(const std::string& literal, std::string& text) {
        const char quote = literal.front();
        for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
            const bool isLineEnd = quote == '"' && literal.compare(i, 2, "\\n") == 0;
            if (isLineEnd) {
                text += '\n';
            } else if (quote == '\'' && IsInvisible(literal[i])) {
                text += PickWhite(random_);
            } else {
                text += literal[i];
            }
            if (isLineEnd || literal[i] == quote) ++i;
        }
    }

    RandomNumbers& random_;
    std::size_t longest_;  // where lists end
};

}  // namespace

std::uint64_t RandomNumbers::Next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31U);
}

TypeNode MakeType(RandomNumbers& random) {
    return TypeMaker(random).MakeRoot();
}

std::vector<std::string> TypePieces(const TypeNode& root) {
    std::vector<std::string> pieces;
    AppendPieces(root, pieces);
    return pieces;
}

std::string MakeInput(const TypeNode& root, RandomNumbers& random) {
    InputMaker maker(random);
    std::string text;
    if (random.Chance(15)) {
        maker.AppendNoise(text, 12);
        return text;
    }
    maker.Append(root, text);
    if (random.Chance(50)) maker.Disturb(text);
    return text;
}

}  // namespace kvl
