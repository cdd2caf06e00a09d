#include "values/SortKeys.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

#include "text/Numbers.h"
#include "values/TypeIds.h"

namespace kvl {

namespace {

constexpr std::uint64_t kNoNumber = ~std::uint64_t{0};  // behind all that are
constexpr std::size_t kFewKeys = 256;                   // which are sorted more quickly by comparing them

std::uint64_t HeadOfInteger(std::int32_t value) {
    return static_cast<std::uint32_t>(value) ^ 0x80000000U;
}

// The bits of a float ascend with it once the sign is turned, and the rest as well where it is negative.
std::uint64_t HeadOfFloat(float value) {
    if (std::isnan(value)) return kNoNumber;
    const auto bits = std::bit_cast<std::uint32_t>(value == 0 ? 0.0F : value);  // -0 equals 0
    return (bits & 0x80000000U) != 0 ? ~bits : bits | 0x80000000U;
}

std::uint64_t HeadOfText(std::string_view text) {
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < sizeof head; ++i)
        head = head << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return head;
}

}  // namespace

CellKind GetCellKind(int typeId) {
    switch (typeId) {
        case kTypeInteger:
        case kConstantInteger:
            return CellKind::Integer;
        case kTypeFloat:
        case kConstantFloat:
            return CellKind::Float;
        case kTypeBool:
        case kConstantBool:
            return CellKind::Boolean;
        case kTypeStream:
        case kTypeString:
        case kTypeIdentifier:
        case kConstantString:
        case kCategorySequence:
        case kCategoryNested:
        case kCategoryChoice:
        case kCategoryPermutation:
        case kCategoryDistance:
        case kCategoryStream:
        case kCategoryOption:
        case kCategoryLine:
            return CellKind::Text;
        default:
            return CellKind::None;
    }
}

void SortKeys::Add(std::string_view cell) {
    const auto index = static_cast<Index>(keys_.size());
    if (kind_ == CellKind::Integer) {
        keys_.push_back({HeadOfInteger(ReadInteger(cell)), index, 0});
    } else if (kind_ == CellKind::Float) {
        keys_.push_back({HeadOfFloat(static_cast<float>(ReadFloat(cell))), index, 0});
    } else {
        keys_.push_back({HeadOfText(cell), index, static_cast<std::uint32_t>(cell.size())});
        texts_.push_back(cell);
    }
}

std::vector<SortKeys::Index> SortKeys::InOrder() {
    Sort();
    std::vector<Index> order;
    order.reserve(keys_.size());
    for (const Key& key : keys_)
        order.push_back(key.index);
    return order;
}

// The first of equal values is the first of its run when all are sorted.
std::vector<SortKeys::Index> SortKeys::FirstOfEach() {
    Sort();
    std::vector<bool> isFirst(keys_.size());
    for (std::size_t i = 0; i < keys_.size(); ++i)
        isFirst[keys_[i].index] = i == 0 || !AreEqual(keys_[i - 1], keys_[i]);
    std::vector<Index> first;
    for (Index index = 0; index < isFirst.size(); ++index)
        if (isFirst[index]) first.push_back(index);
    return first;
}

// Where the head holds all of a text, it is the beginning of the other.
bool SortKeys::IsTextBelow(const Key& a, const Key& b) const {
    if (std::min(a.length, b.length) <= sizeof a.head) return a.length < b.length;
    return texts_[a.index] < texts_[b.index];
}

bool SortKeys::AreEqual(const Key& a, const Key& b) const {
    if (a.head != b.head) return false;
    if (kind_ == CellKind::Float) return a.head != kNoNumber;
    if (a.length != b.length) return false;
    return a.length <= sizeof a.head || texts_[a.index] == texts_[b.index];
}

void SortKeys::Sort() {
    SortByHead();
    if (!texts_.empty()) SortEqualHeads();
}

// A radix sort from the last byte to the first, in which each pass keeps the order of the one before (H. H. Seward,
// 1954). Bytes that all heads share cost no pass.
void SortKeys::SortByHead() {
    if (keys_.size() <= kFewKeys) {
        std::stable_sort(keys_.begin(), keys_.end(), [](const Key& a, const Key& b) { return a.head < b.head; });
        return;
    }
    std::array<std::array<Index, 256>, sizeof(Key::head)> counts{};
    for (const Key& key : keys_) {
        for (std::size_t byte = 0; byte < counts.size(); ++byte)
            ++counts[byte][key.head >> 8 * byte & 0xFF];
    }
    std::vector<Key> sorted(keys_.size());
    for (std::size_t byte = 0; byte < counts.size(); ++byte) {
        std::array<Index, 256>& places = counts[byte];
        if (places[keys_.front().head >> 8 * byte & 0xFF] == keys_.size()) continue;
        Index place = 0;
        for (Index& count : places) {
            place += count;
            count = place - count;
        }
        for (const Key& key : keys_)
            sorted[places[key.head >> 8 * byte & 0xFF]++] = key;
        keys_.swap(sorted);
    }
}

void SortKeys::SortEqualHeads() {
    for (auto first = keys_.begin(); first != keys_.end();) {
        const auto last = std::find_if(first + 1, keys_.end(), [&](const Key& key) { return key.head != first->head; });
        if (last - first > 1) {
            std::stable_sort(first, last, [this](const Key& a, const Key& b) { return IsTextBelow(a, b); });
        }
        first = last;
    }
}

}  // namespace kvl
