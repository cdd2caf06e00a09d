#pragma once
// What the two C++ competitors of this job share: the model of the declarations and the vocabulary of member kinds.

#include <string_view>
#include <vector>

namespace kvl::bench {

struct KindRow {
    std::string_view word;
    std::string_view function;  // that shows a value of this kind
};
constexpr KindRow kWordKinds[] = {
    {"string", "quoted"},           {"string_view", "quoted"},      {"path", "quoted"},
    {"char_array", "quoted"},       {"bool", "character"},          {"char", "character"},
    {"byte", "character"},          {"wchar_t", "character"},       {"float", "std::to_string"},
    {"double", "std::to_string"},   {"half", "std::to_string"},     {"int8_t", "std::to_string"},
    {"int16_t", "std::to_string"},  {"int32_t", "std::to_string"},  {"int64_t", "std::to_string"},
    {"uint8_t", "std::to_string"},  {"uint16_t", "std::to_string"}, {"uint32_t", "std::to_string"},
    {"uint64_t", "std::to_string"}, {"date", "iso_time"},           {"time_of_day", "iso_time"},
    {"duration", "iso_time"},       {"time_zone", "iso_time"},
};
constexpr std::string_view kContainers[] = {"vector", "optional", "set", "list"};

// An entry of an enumeration or a structure, or a note between them.
struct Entry {
    std::string_view note;
    std::string_view name, number;                        // of a value
    std::string_view qualifier, function, size, usually;  // of a member
};

struct Item {
    std::string_view note;
    bool isEnum = false;
    std::string_view name, base;
    std::vector<Entry> entries;
};

}  // namespace kvl::bench
