#pragma once
// What the literal parser writes to an open log, line by line.

#include <string>
#include <vector>

#include "messages/Log.h"
#include "values/CVariable.h"

namespace kvl {

inline std::string Indent(const CVariable& element) {
    return std::string(4 * static_cast<std::size_t>(element.depth), ' ');
}

// White space as hexadecimal digits.
inline std::string ShownText(const CVariable& element, const std::string& text) {
    if (element.typeId != kTypeWhiteSpace) return text;
    std::string digits;
    for (const char c : text)
        for (const int digit : {static_cast<unsigned char>(c) / 16, static_cast<unsigned char>(c) % 16})
            digits += "0123456789ABCDEF"[digit];
    return digits;
}

// An element is entered or left.
inline void LogElement(const CVariable& element, int first, int last, int cursor, const std::string& notes,
                       const std::string& text) {
    std::string line = Indent(element) + std::to_string(cursor) + ", [ " + std::to_string(first);
    if (last != first) line += ", " + std::to_string(last);
    line += " ] " + element.typeName + " " + notes + element.label;
    if (!text.empty()) line += " = |" + ShownText(element, text) + "|";
    WriteLog(line + "\n");
}

inline void LogVerdict(const std::string& category, const CVariable& element, bool ok) {
    WriteLog("\r\n" + std::string(ok ? "valid " : "not a valid ") + category + " item: " + element.GetRangeLabel() +
             "\r\n");
}

inline void LogIteration(const CVariable& element) {
    WriteLog(Indent(element) + "iteration " + element.GetRangeLabel() + "::" + element.typeName);
}

inline void LogRecord(const std::string& verb, const std::vector<int>& path, bool provisional, const std::string& to,
                      const CVariable& list, const std::string& cells) {
    std::string numbers;
    for (const int number : path)
        numbers += std::to_string(number) + " ";
    WriteLog("\n" + verb + numbers + (provisional ? "* " : "") + to + list.label + "\n" + std::string(40, '#') +
             "\n\n" + cells + "\n");
}

}  // namespace kvl
