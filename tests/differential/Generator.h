#pragma once
// Random types and inputs for them, from one seed: the same everywhere. Names, literals and inputs share a few
// characters, so that what matches and what nearly matches are both frequent.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kvl {

// splitmix64: small, and defined to the bit.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : state_(seed) {}
    std::uint64_t Next();
    // 0 to count - 1.
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(Next() % count); }
    bool Chance(std::size_t percent) { return Below(100) < percent; }

private:
    std::uint64_t state_;
};

// An element of a type: a category, an elementary element or a literal, told apart by its type id.
struct TypeNode {
    int typeId = 0;
    std::string name;     // empty for an unnamed element
    std::string literal;  // as declared, with its quotes
    std::vector<TypeNode> children;
};

TypeNode MakeType(RandomNumbers& random);
// The declaration in pieces: heads of categories, their closing brackets, elements.
std::vector<std::string> TypePieces(const TypeNode& root);
// An input that the type might match, or nearly, or one that has nothing to do with it.
std::string MakeInput(const TypeNode& root, RandomNumbers& random);

}  // namespace kvl
