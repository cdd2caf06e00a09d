// Compiling follows the uses of subtypes without copying a tree, and enters a type once while it looks for circles.
// Here the plain way does both, for all small sets of types: every use is walked each time, every use becomes a copy.
#include <algorithm>

#include "typeschema/TypeText.h"

namespace kvl {
namespace {

constexpr int kTypes = 3;

// Types T0, T1, T2, each with up to two uses of others or itself, X and Y.
std::vector<std::string> AllBodies() {
    std::vector<std::string> bodies = {""};
    for (int first = 0; first < kTypes; ++first) {
        const std::string use = "X ::T" + std::to_string(first);
        bodies.push_back(use);
        for (int second = 0; second < kTypes; ++second)
            bodies.push_back(use + " Y ::T" + std::to_string(second));
    }
    return bodies;
}

bool IsUse(const TypeItem& item) {
    return item.itemKind == kItemTyped && item.elementType == kDeclaredTypeName;
}

class PlainExpansion {
public:
    explicit PlainExpansion(std::vector<DeclaredType> types) : types_(std::move(types)) {
        Walk(types_.front().root);
        expanded_ = Expand(types_.front().root);
        Mark(expanded_);
    }

    const std::vector<const TypeItem*>& Recursive() const { return recursive_; }
    const TypeItem& Expanded() const { return expanded_; }

private:
    static bool Holds(const std::vector<const TypeItem*>& items, const std::string& name) {
        return std::any_of(items.begin(), items.end(), [&](const TypeItem* item) { return item->typeName == name; });
    }
    const TypeItem& RootOf(const std::string& name) const {
        return types_[static_cast<std::size_t>(name.back() - '0')].root;
    }

    void Walk(const TypeItem& category) {
        for (const TypeItem& item : category.children) {
            if (!IsUse(item) || Holds(recursive_, item.typeName)) continue;
            if (Holds(path_, item.typeName)) {
                recursive_.push_back(&item);
                continue;
            }
            path_.push_back(&item);
            Walk(RootOf(item.typeName));
            path_.pop_back();
        }
    }

    TypeItem Expand(const TypeItem& category) const {
        TypeItem copy = category;
        for (TypeItem& item : copy.children) {
            if (!IsUse(item) || Holds(recursive_, item.typeName)) continue;
            TypeItem root = Expand(RootOf(item.typeName));
            root.elementName = item.elementName;
            root.subtypeName = item.typeName;
            item = std::move(root);
        }
        return copy;
    }

    void Mark(TypeItem& category) const {
        for (TypeItem& item : category.children) {
            if (item.itemKind == kItemCategory) Mark(item);
            if (!IsUse(item) || item.typeName == types_.front().name) continue;
            item.itemKind = kItemCategory;
            item.categoryType = kCategoryRecursion;
            item.children = Expand(RootOf(item.typeName)).children;
        }
    }

    std::vector<DeclaredType> types_;
    std::vector<const TypeItem*> path_, recursive_;
    TypeItem expanded_;
};

// Has a walk along the uses, from any type, a way back to its start?
bool HasCircle(const std::vector<DeclaredType>& types) {
    bool reaches[kTypes][kTypes] = {};
    for (std::size_t from = 0; from < kTypes; ++from) {
        for (const TypeItem& item : types[from].root.children)
            if (IsUse(item)) reaches[from][item.typeName.back() - '0'] = true;
    }
    for (int over = 0; over < kTypes; ++over) {
        for (auto& row : reaches)
            for (int to = 0; to < kTypes; ++to)
                row[to] = row[to] || (row[over] && reaches[over][to]);
    }
    return reaches[0][0] || reaches[1][1] || reaches[2][2];
}

class ExpansionTest : public DeclaredTypesTest {
protected:
    void CompareWithPlain(const std::string& text) {
        outside_.console.pieces.clear();
        const auto schema = Read(text);
        const PlainExpansion plain(schema->declaredTypes);
        const bool hasCircle = HasCircle(schema->declaredTypes);
        EXPECT_EQ(Compile(*schema), !hasCircle) << text;
        if (!plain.Recursive().empty()) {
            const TypeItem& use = *plain.Recursive().front();
            const auto& parameters = Process().vectorMessageParameters;
            EXPECT_EQ(parameters[ERRSTR_FEATURE], "Recursive Type for " + use.typeName) << text;
            TextPlace place;
            EXPECT_TRUE(LocateInSource("/home/T.txt", use.namePosition, use.nameText, place));
            EXPECT_EQ(parameters[ERRSTR_ENTITYLINEPOSITION], std::to_string(place.column)) << text;
        }
        CTypeSchema expanded;
        expanded.names->name = "T0";
        expanded.declaredTypes.resize(1);
        expanded.declaredTypes.front().root = plain.Expanded();
        ASSERT_TRUE(expanded.BuildElementTable());
        EXPECT_EQ(schema->ElementsText(), expanded.ElementsText()) << text;
    }
};

TEST_F(ExpansionTest, EqualsThePlainWayForAllSmallSetsOfTypes) {
    const std::vector<std::string> bodies = AllBodies();
    ASSERT_EQ(bodies.size(), 13U);
    for (const std::string& first : bodies)
        for (const std::string& second : bodies)
            for (const std::string& third : bodies)
                CompareWithPlain("::T0 = ::SEQUENCE{ " + first + " 'a' } ::T1 = ::LIST{ " + second +
                                 " N ::BOOL } ::T2 = ::OPTION{ " + third + " 'c' }");
}

}  // namespace
}  // namespace kvl
