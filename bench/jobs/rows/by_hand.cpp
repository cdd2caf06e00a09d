// Rows "id;name;amount;flag" into one SQL statement: scanner, structures, one output buffer.
#include <vector>

#include "support/TextScanner.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

struct Row {
    std::string_view id, name, amount, flag;
};

bool ReadRows(std::string_view input, std::vector<Row>& rows) {
    TextScanner scanner(input);
    while (!scanner.IsAtEnd()) {
        Row row;
        row.id = scanner.Digits();
        if (row.id.empty() || !scanner.Accept(';')) return false;
        row.name = scanner.Until(';');
        row.amount = scanner.Decimal();
        if (row.name.empty() || row.amount.empty() || !scanner.Accept(';')) return false;
        row.flag = scanner.Name();
        if (row.flag != "TRUE" && row.flag != "FALSE") return false;
        rows.push_back(row);
    }
    return !rows.empty();
}

void WriteRows(const std::vector<Row>& rows, std::string& output) {
    Append(output, "INSERT INTO payment (id, name, amount, flag) VALUES\r\n");
    for (const Row& row : rows) {
        Append(output, "    (", row.id, ", '", row.name, "', ", row.amount, ", ", row.flag);
        Append(output, &row == &rows.back() ? ")\r\n" : "),\r\n");
    }
    Append(output, ";\r\n");
}

bool Generate(std::string_view input, std::string& output) {
    std::vector<Row> rows;
    if (!ReadRows(input, rows)) return false;
    WriteRows(rows, output);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
