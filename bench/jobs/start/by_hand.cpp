// The smallest program that writes a file.
#include "support/WholeFile.h"

namespace {

bool Generate(std::string_view, std::string& output) {
    kvl::bench::Append(output, "Hello.\r\n");
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    return kvl::bench::RunCompetitor(argc, argv, Generate);
}
