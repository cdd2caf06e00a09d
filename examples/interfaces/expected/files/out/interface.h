// Made by kvlRun from an interface definition; do not edit.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// A small address book.
// How a number is reached.
enum class Line {
    // Nothing is known.
    LINE_UNKNOWN = 0,
    LINE_MOBILE = 1,
    LINE_HOME = 2,
};

constexpr std::string_view to_string(Line value) {
    switch (value) {
        case Line::LINE_UNKNOWN: return "LINE_UNKNOWN";
        case Line::LINE_MOBILE: return "LINE_MOBILE";
        case Line::LINE_HOME: return "LINE_HOME";
    }
    return "";
}

/* A person. */
struct Person {
    std::string name{};
    std::int32_t id{};
    // unique
    // What a person may be.
    enum class Standing {
        GUEST = 0,
        MEMBER = 1,
    };

    friend constexpr std::string_view to_string(Standing value) {
        switch (value) {
            case Standing::GUEST: return "GUEST";
            case Standing::MEMBER: return "MEMBER";
        }
        return "";
    }

    Standing standing{};
    struct Number {
        std::string digits{};
        Line line{};
    };

    std::vector<Number> numbers;
    std::map<std::string, std::int64_t> visits;
};

struct Book {
    std::vector<Person> people;
};

