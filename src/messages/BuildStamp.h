#pragma once
// Which program this is: its version, and when and as which build it was made.

#include <string>
#include <string_view>

namespace kvl {

constexpr std::string_view kVersion = "14.0.0";

// "(number,year-month-day,hour:minute:second)"; the time is UTC.
std::string_view BuildStamp();

struct BuildFacts {
    std::string number;
    std::string time;  // as "Thu Jan 01 00:00:00 1970"; empty when the stamp tells no time
};
BuildFacts ReadBuildStamp(std::string_view stamp);

}  // namespace kvl
