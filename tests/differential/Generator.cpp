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
    {kCategoryList, 11},
    {kCategoryStream, 5},
    {kCategoryPermutation, 6},
    {kCategoryDistance, 8},
    // those without children; kLeaves tells where they begin
    {kLiteralStrict, 11},
    {kLiteralWeak, 16},
    {kTypeString, 12},
    {kTypeInteger, 6},
    {kTypeFloat, 4},
    {kTypeBool, 2},
    {kTypeIdentifier, 6},
    {kTypeWhiteSpace, 6},
};
constexpr std::size_t kLeaves = 9;

int PickType(RandomNumbers& random, std::size_t firstRow, std::size_t behind) {
    std::size_t sum = 0;
    for (std::size_t i = firstRow; i < behind; ++i)
        sum += kWeights[i].weight;
    std::size_t chosen = random.Below(sum);
    std::size_t row = firstRow;
    while (chosen >= kWeights[row].weight)
        chosen -= kWeights[row++].weight;
    return kWeights[row].typeId;
}

template <std::size_t N>
std::string_view Pick(RandomNumbers& random, const std::string_view (&texts)[N]) {
    return texts[random.Below(N)];
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
        TypeNode node;
        if (IsCategoryType(typeId)) node = MakeCategory(typeId, depth);
        node.typeId = typeId;
        // The first letter mixes the order of labels.
        if (random_.Chance(65)) node.name = std::string(1, "AMZ"[random_.Below(3)]) + std::to_string(++elements_);
        return node;
    }

    TypeNode MakeCategory(int typeId, std::size_t depth) {
        TypeNode node;
        node.typeId = typeId;
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
        TypeNode node;
        node.typeId = typeId;
        ++elements_;
        const char quote = typeId == kLiteralStrict ? '"' : '\'';
        std::string text;
        for (std::size_t parts = random_.Chance(70) ? 1 : 2 + random_.Below(2); parts > 0; --parts)
            text += random_.Chance(84) ? Pick(random_, kVisible) : Pick(random_, kWhite);
        if (random_.Chance(3)) text += std::string(2, quote);
        if (random_.Chance(3)) text += "\\n";
        node.literal = quote + text + quote;
        return node;
    }

    RandomNumbers& random_;
    int elements_ = 0;
};

void AppendElement(const TypeNode& node, std::string& text) {
    if (!node.literal.empty()) {
        text += node.literal + " ";
        return;
    }
    const bool isWhiteSpace = node.typeId == kTypeWhiteSpace;
    text += node.name + "::" + (isWhiteSpace ? "WHITESPACES" : std::string(GetTypeName(node.typeId)));
    if (IsCategoryType(node.typeId)) {
        text += "{ ";
        for (const TypeNode& child : node.children)
            AppendElement(child, text);
        text += "}";
    }
    text += " ";
}

// --- inputs ---

class InputMaker {
public:
    explicit InputMaker(RandomNumbers& random) : random_(random), longest_(random.Chance(15) ? 250 : 50) {}

    void AppendNoise(std::string& text, std::size_t most) {
        for (std::size_t count = random_.Below(most + 1); count > 0; --count)
            text += random_.Chance(70) ? Pick(random_, kVisible) : Pick(random_, kWhite);
    }

    void Append(const TypeNode& node, std::string& text) {
        switch (node.typeId) {
            case kCategoryChoice:
                Append(node.children[random_.Below(node.children.size())], text);
                break;
            case kCategoryOption:
                if (random_.Chance(60)) AppendChildren(node, text);
                break;
            case kCategoryList:
                for (std::size_t count = 1 + random_.Below(random_.Chance(15) ? 16 : 3);
                     count > 0 && text.size() < longest_; --count)
                    AppendChildren(node, text);
                break;
            case kCategoryPermutation:
                AppendShuffled(node, text);
                break;
            case kCategoryDistance:
            case kCategoryStream:
                AppendNoise(text, 6);
                AppendChildren(node, text);
                break;
            case kCategoryLine:
                AppendChildren(node, text);
                if (random_.Chance(30)) AppendNoise(text, 2);
                text += random_.Chance(80) ? "\n" : "\r\n";
                break;
            case kCategoryNested:
                AppendNested(node, text);
                break;
            case kCategorySequence:
                AppendChildren(node, text);
                break;
            default:
                AppendLeaf(node, text);
        }
    }

    // A few bytes gone, doubled, exchanged or put in.
    void Disturb(std::string& text) {
        for (std::size_t count = 1 + random_.Below(3); count > 0; --count) {
            const std::size_t at = random_.Below(text.size() + 1);
            const std::string piece = text.substr(at, 1 + random_.Below(3));
            const bool removes = random_.Chance(55);
            if (removes) text.erase(at, piece.size());
            if (!removes && random_.Chance(40)) text.insert(at, piece);
            if (random_.Chance(45))
                text.insert(at, random_.Chance(60) ? Pick(random_, kVisible) : Pick(random_, kWhite));
        }
    }

private:
    void AppendChildren(const TypeNode& node, std::string& text) {
        for (const TypeNode& child : node.children)
            Append(child, text);
    }

    void AppendShuffled(const TypeNode& node, std::string& text) {
        std::vector<TypeNode> children = node.children;
        for (std::size_t i = children.size(); i > 1; --i)
            std::swap(children[i - 1], children[random_.Below(i)]);
        for (const TypeNode& child : children)
            Append(child, text);
    }

    void AppendNested(const TypeNode& node, std::string& text) {
        for (std::size_t i = 0; i + 1 < node.children.size(); ++i)
            Append(node.children[i], text);
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
            text += Pick(random_, kWhite);
        switch (node.typeId) {
            case kLiteralStrict:
                AppendStrict(node.literal, text);
                break;
            case kLiteralWeak:
                AppendWeak(node.literal, text);
                break;
            case kTypeInteger:
                AppendInteger(text);
                break;
            case kTypeFloat:
                AppendInteger(text);
                if (random_.Chance(60)) text += random_.Chance(80) ? ".5" : ".";
                break;
            case kTypeBool:
                text += random_.Chance(50) ? "TRUE" : "FALSE";
                break;
            case kTypeIdentifier:
                text += random_.Chance(80) ? "a1" : "_b";
                break;
            case kTypeWhiteSpace:
                text += Pick(random_, kWhite);
                break;
            default:
                for (std::size_t count = 1 + random_.Below(2); count > 0; --count)
                    text += Pick(random_, kVisible);
                if (random_.Chance(60)) text += " ";
        }
    }

    void AppendInteger(std::string& text) {
        if (random_.Chance(30)) text += random_.Chance(50) ? "+" : "-";
        text += std::to_string(random_.Below(30));
    }

    static void AppendStrict(const std::string& literal, std::string& text) {
        for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
            if (literal.compare(i, 2, "\\n") == 0) {
                text += '\n';
                ++i;
            } else {
                text += literal[i];
                if (literal[i] == '"') ++i;
            }
        }
    }

    void AppendWeak(const std::string& literal, std::string& text) {
        for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
            text += IsInvisible(literal[i]) ? Pick(random_, kWhite) : std::string_view(literal).substr(i, 1);
            if (literal[i] == '\'') ++i;
        }
    }

    RandomNumbers& random_;
    std::size_t longest_;  // where lists end
};

// --- smaller types ---

bool NeedsItsEnds(const TypeNode& node) {
    return node.typeId == kCategoryNested;
}

void AddSmaller(const TypeNode& root, std::vector<TypeNode>& smaller) {
    for (std::size_t i = 0; i < root.children.size(); ++i) {
        const bool isEnd = NeedsItsEnds(root) && (i == 0 || i + 1 == root.children.size());
        if (!isEnd) {
            smaller.push_back(root);
            smaller.back().children.erase(smaller.back().children.begin() + static_cast<std::ptrdiff_t>(i));
        }
        const TypeNode& child = root.children[i];
        if (!child.literal.empty() && child.literal.size() > 3) {
            smaller.push_back(root);
            smaller.back().children[i].literal.erase(1, 1);
        }
        if (!child.name.empty()) {
            smaller.push_back(root);
            smaller.back().children[i].name.clear();
        }
        for (const TypeNode& grandchild : child.children) {
            smaller.push_back(root);
            smaller.back().children[i] = grandchild;
        }
        std::vector<TypeNode> smallerChildren;
        AddSmaller(child, smallerChildren);
        for (TypeNode& smallerChild : smallerChildren) {
            smaller.push_back(root);
            smaller.back().children[i] = std::move(smallerChild);
        }
    }
}

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

std::string TypeFileText(const TypeNode& root) {
    std::string text = "$BEGIN KVL VERSION=\"1.0.0\"$\n$TYPE ::T = ";
    AppendElement(root, text);
    return text + "$\n$END KVL VERSION=\"1.0.0\"$\n";
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

std::vector<TypeNode> SmallerTypes(const TypeNode& root) {
    std::vector<TypeNode> smaller;
    for (const TypeNode& child : root.children)
        if (IsCategoryType(child.typeId)) smaller.push_back(child);
    AddSmaller(root, smaller);
    return smaller;
}

}  // namespace kvl
