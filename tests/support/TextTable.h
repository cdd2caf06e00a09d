#pragma once
// Cases whose rows are calls on texts: "|a|b| gives |c|", each text in the notation of WrittenBytes.h, for a function
// named by the case.

#include <algorithm>
#include <functional>
#include <sstream>

#include "support/CaseFile.h"
#include "support/WrittenBytes.h"

namespace kvl {

using Texts = std::vector<std::string>;
using TextCalls = std::map<std::string, std::function<Texts(const Texts&)>>;

// "|a|b|" as texts.
inline Texts ReadTexts(const std::string& written) {
    Texts texts;
    std::istringstream parts(written.substr(1));
    for (std::string part; std::getline(parts, part, '|');)
        texts.push_back(BytesOf(part));
    return texts;
}

inline void ExpectTable(const TextCase& table, const TextCalls& calls) {
    std::istringstream rows(table["rows"]);
    std::string actual;
    for (std::string row; std::getline(rows, row);) {
        const std::string arguments = row.substr(0, row.find(" gives "));
        actual += arguments + " gives |";
        for (const std::string& text : calls.at(table.name)(ReadTexts(arguments)))
            actual += WrittenInLine(text) + "|";
        actual += row.substr(std::min(row.rfind("  # "), row.size())) + "\n";
    }
    ExpectSection(table, "rows", actual);
}

}  // namespace kvl
