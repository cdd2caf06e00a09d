// Feeds a fuzz target with the files of folders, as an ordinary test without a fuzzing engine. Arguments: files and
// folders, which are searched whole; with "suffix=.type" only files of that suffix count.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

void RunFile(const fs::path& path, std::size_t& count) {
    std::ifstream stream(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(data.data(), data.size());
    ++count;
}

bool Counts(const fs::path& path, const std::vector<std::string>& suffixes) {
    if (suffixes.empty()) return true;
    for (const std::string& suffix : suffixes) {
        if (path.extension() == suffix) return true;
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> suffixes;
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("suffix=")) {
            suffixes.emplace_back(argument.substr(7));
        } else if (fs::is_directory(argv[i])) {
            for (const auto& entry : fs::recursive_directory_iterator(argv[i])) {
                if (entry.is_regular_file() && Counts(entry.path(), suffixes)) RunFile(entry.path(), count);
            }
        } else {
            RunFile(argv[i], count);
        }
    }
    std::printf("%zu inputs\n", count);
    return count > 0 ? 0 : 1;
}
