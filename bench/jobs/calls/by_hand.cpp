// Orders with their parts into a line each: one function called for each order with its parts.
#include <vector>

#include "support/TextScanner.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

struct Part {
    std::string_view name, count;
};
struct Order {
    std::string_view number;
    std::vector<Part> parts;
};

bool ReadOrder(TextScanner& scanner, Order& order) {
    order.number = scanner.Digits();
    if (order.number.empty() || !scanner.Accept(':')) return false;
    while (!scanner.Accept(';')) {
        Part part;
        part.name = scanner.Name();
        part.count = scanner.Digits();
        if (part.name.empty() || part.count.empty()) return false;
        static_cast<void>(scanner.Accept(','));
        order.parts.push_back(part);
    }
    return !order.parts.empty();
}

void WriteParts(const std::vector<Part>& parts, std::string& output) {
    for (const Part& part : parts)
        Append(output, part.count, " x ", part.name, &part == &parts.back() ? "" : ", ");
}

bool Generate(std::string_view input, std::string& output) {
    TextScanner scanner(input);
    std::vector<Order> orders;
    while (!scanner.IsAtEnd())
        if (!ReadOrder(scanner, orders.emplace_back())) return false;
    for (const Order& order : orders) {
        Append(output, "order ", order.number, " (");
        WriteParts(order.parts, output);
        Append(output, ")\r\n");
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
