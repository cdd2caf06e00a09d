#pragma once
// Hashes of texts that can be taken from sums: the sum of a text's bytes up to a place, less that up to an earlier
// place times a power, is the hash of what stands between.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kvl {

using TextHash = std::uint64_t;

constexpr TextHash kTextHashBase = 0xD1342543DE82EF95U;

constexpr TextHash ByteHash(char c) {
    return static_cast<unsigned char>(c) + TextHash{1};
}

constexpr TextHash ExtendHash(TextHash sum, char c) {
    return sum * kTextHashBase + ByteHash(c);
}

// The same for as many bytes as a stride has. The products of four don't wait for each other, which is four times as
// quick as one by one.
template <std::size_t kStride>
constexpr TextHash ExtendHashBy(TextHash sum, const char* bytes) {
    static_assert(kStride == 1 || kStride == 4);
    if constexpr (kStride == 1) {
        return ExtendHash(sum, *bytes);
    } else {
        constexpr TextHash kSquare = kTextHashBase * kTextHashBase;
        const TextHash front = ExtendHash(ByteHash(bytes[0]), bytes[1]);
        const TextHash back = ExtendHash(ByteHash(bytes[2]), bytes[3]);
        return sum * (kSquare * kSquare) + (front * kSquare + back);
    }
}

constexpr TextHash ExtendHash(TextHash sum, std::string_view bytes) {
    for (; bytes.size() >= 4; bytes.remove_prefix(4))
        sum = ExtendHashBy<4>(sum, bytes.data());
    for (const char c : bytes)
        sum = ExtendHash(sum, c);
    return sum;
}

// By which a sum is multiplied when it moves on by so many bytes.
constexpr TextHash HashPower(std::size_t byteCount) {
    TextHash power = 1;
    for (TextHash square = kTextHashBase; byteCount > 0; byteCount >>= 1, square *= square)
        if ((byteCount & 1) != 0) power *= square;
    return power;
}

// The sums of similar texts lie on a lattice; this takes them off it, for tables that go by the upper bits.
constexpr TextHash MixHash(TextHash hash) {
    return (hash ^ hash >> 32) * 0x9E3779B97F4A7C15U;
}

}  // namespace kvl
