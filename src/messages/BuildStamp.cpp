#include "messages/BuildStamp.h"

#include <chrono>
#include <ctime>
#include <vector>

#include "BuildStampText.h"
#include "text/Numbers.h"

namespace kvl {
namespace {

constexpr std::string_view kDelimiters = "(,-:)";
constexpr std::size_t kFieldCount = 7;

std::vector<std::string_view> SplitFields(std::string_view stamp) {
    std::vector<std::string_view> fields;
    for (std::size_t begin = 0; (begin = stamp.find_first_not_of(kDelimiters, begin)) != std::string_view::npos;) {
        const std::size_t end = std::min(stamp.find_first_of(kDelimiters, begin), stamp.size());
        fields.push_back(stamp.substr(begin, end - begin));
        begin = end;
    }
    return fields;
}

// Empty for a day that is in no calendar.
std::string TimeText(const std::vector<std::string_view>& fields) {
    const auto number = [&](std::size_t field) { return ReadInteger(fields[field]); };
    const std::chrono::year_month_day date{std::chrono::year(number(1)),
                                           std::chrono::month(static_cast<unsigned>(number(2))),
                                           std::chrono::day(static_cast<unsigned>(number(3)))};
    if (!date.ok()) return {};
    std::tm parts{};
    parts.tm_year = number(1) - 1900;
    parts.tm_mon = number(2) - 1;
    parts.tm_mday = number(3);
    parts.tm_hour = number(4);
    parts.tm_min = number(5);
    parts.tm_sec = number(6);
    parts.tm_wday = static_cast<int>(std::chrono::weekday(date).c_encoding());
    char text[64];
    return {text, std::strftime(text, sizeof text, "%a %b %d %H:%M:%S %Y", &parts)};
}

}  // namespace

std::string_view BuildStamp() {
    return KVL_BUILD_STAMP;
}

BuildFacts ReadBuildStamp(std::string_view stamp) {
    const std::vector<std::string_view> fields = SplitFields(stamp);
    BuildFacts facts;
    if (!fields.empty()) facts.number = fields[0];
    if (fields.size() == kFieldCount) facts.time = TimeText(fields);
    return facts;
}

}  // namespace kvl
