// Marked regions "[[key|value]]" out of free text: search for the mark, look at what follows, one output buffer.
#include <vector>

#include "support/TextScanner.h"
#include "support/WholeFile.h"

namespace {

using namespace kvl::bench;

struct Region {
    std::string_view key, value;
};

std::string_view Trim(std::string_view text) {
    while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ')
        text.remove_prefix(1);
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ')
        text.remove_suffix(1);
    return text;
}

// Reads what stands behind an opening mark; the rest of the text behind the region, or null data if there is none.
std::string_view ReadRegion(std::string_view text, Region& region) {
    TextScanner scanner(text);
    region.key = scanner.Name();
    if (region.key.empty() || !scanner.Accept('|')) return {};
    text = scanner.Rest();
    const std::size_t length = text.find("]]");
    if (length == std::string_view::npos) return {};
    region.value = Trim(text.substr(0, length));
    return region.value.empty() ? std::string_view() : text.substr(length + 2);
}

bool Generate(std::string_view input, std::string& output) {
    std::vector<Region> regions;
    for (std::size_t begin = input.find("[["); begin != std::string_view::npos; begin = input.find("[[")) {
        Region region;
        const std::string_view rest = ReadRegion(input.substr(begin + 2), region);
        if (rest.data() != nullptr) regions.push_back(region);
        input = rest.data() != nullptr ? rest : input.substr(begin + 1);
    }
    for (const Region& region : regions)
        Append(output, region.key, " = ", region.value, "\r\n");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return RunCompetitor(argc, argv, Generate);
}
