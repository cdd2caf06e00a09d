// A table rendered fifty times with conditions and separators: structures, one output buffer.
#include <array>
#include <vector>

#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

constexpr int kPages = 50;
enum Field : std::size_t { kId, kName, kMail, kState, kCity, kFirstValue, kNote = 19, kFields };

using Row = std::array<std::string_view, kFields>;

bool ReadRow(std::string_view line, Row& row) {
    for (std::size_t field = 0; field < kNote; ++field) {
        const std::size_t length = line.find(';');
        if (length == std::string_view::npos) return false;
        row[field] = line.substr(0, length);
        line.remove_prefix(length + 1);
    }
    row[kNote] = line;
    return true;
}

bool ReadTable(std::string_view input, std::vector<Row>& rows) {
    while (!input.empty()) {
        const std::size_t length = input.find('\n');
        if (length == std::string_view::npos || !ReadRow(input.substr(0, length), rows.emplace_back())) return false;
        input.remove_prefix(length + 1);
    }
    return !rows.empty();
}

void WriteRow(const Row& row, std::string& output) {
    Append(output, "  {\"id\": ", row[kId], ", \"name\": \"", row[kName], "\"");
    if (!row[kMail].empty()) Append(output, ", \"mail\": \"", row[kMail], "\"");
    if (row[kState] == "open") Append(output, ", \"open\": true");
    if (!row[kCity].empty()) Append(output, ", \"city\": \"", row[kCity], "\"");
    Append(output, ",\r\n");
    if (!row[kNote].empty()) Append(output, "   \"note\": \"", row[kNote], "\",\r\n");
    Append(output, "   \"values\": [", row[kFirstValue]);
    for (std::size_t field = kFirstValue + 1; field < kNote; ++field)
        Append(output, ", ", row[field]);
    Append(output, "]}");
}

bool Generate(std::string_view input, std::string& output) {
    std::vector<Row> rows;
    if (!ReadTable(input, rows)) return false;
    for (int page = 1; page <= kPages; ++page) {
        Append(output, "{\"page\": ", std::to_string(page), ", \"rows\": [\r\n");
        for (const Row& row : rows) {
            WriteRow(row, output);
            Append(output, &row == &rows.back() ? "\r\n" : ",\r\n");
        }
        Append(output, page == kPages ? "]}\r\n" : "]},\r\n");
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
