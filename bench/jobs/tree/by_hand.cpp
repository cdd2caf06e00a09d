// Groups of parts of leaves into a nested HTML list: recursive descent, structures, one output buffer.
#include <vector>

#include "support/TextScanner.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

struct Leaf {
    std::string_view name, value;
};
struct Part {
    std::string_view name;
    std::vector<Leaf> leaves;
};
struct Group {
    std::string_view name;
    std::vector<Part> parts;
};

bool ReadLeaf(TextScanner& scanner, Leaf& leaf) {
    leaf.name = scanner.Name();
    if (!scanner.Accept('=')) return false;
    leaf.value = scanner.Digits();
    return !leaf.name.empty() && !leaf.value.empty() && scanner.Accept(';');
}

bool ReadPart(TextScanner& scanner, Part& part) {
    part.name = scanner.Name();
    if (part.name.empty() || !scanner.Accept('{')) return false;
    while (scanner.AcceptText("leaf "))
        if (!ReadLeaf(scanner, part.leaves.emplace_back())) return false;
    return !part.leaves.empty() && scanner.Accept('}');
}

bool ReadGroup(TextScanner& scanner, Group& group) {
    group.name = scanner.Name();
    if (group.name.empty() || !scanner.Accept('{')) return false;
    while (scanner.AcceptText("part "))
        if (!ReadPart(scanner, group.parts.emplace_back())) return false;
    return !group.parts.empty() && scanner.Accept('}');
}

void WriteTree(const std::vector<Group>& groups, std::string& output) {
    Append(output, "<ul>\r\n");
    for (const Group& group : groups) {
        Append(output, "  <li>", group.name, "\r\n    <ul>\r\n");
        for (const Part& part : group.parts) {
            Append(output, "      <li>", part.name, "\r\n        <ul>\r\n");
            for (const Leaf& leaf : part.leaves)
                Append(output, "          <li>", leaf.name, ": ", leaf.value, "</li>\r\n");
            Append(output, "        </ul>\r\n      </li>\r\n");
        }
        Append(output, "    </ul>\r\n  </li>\r\n");
    }
    Append(output, "</ul>\r\n");
}

bool Generate(std::string_view input, std::string& output) {
    TextScanner scanner(input);
    std::vector<Group> groups;
    while (scanner.AcceptText("group "))
        if (!ReadGroup(scanner, groups.emplace_back())) return false;
    if (!scanner.IsAtEnd()) return false;
    WriteTree(groups, output);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
