#include "platform/PrivateDirectories.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace kvl {
namespace {

std::vector<std::string>& MadeHere() {
    static std::vector<std::string> paths;
    return paths;
}

// A path with "\" could not be named by the rest of the program, for which that byte separates.
std::string TemporaryPlace() {
    const char* chosen = std::getenv("TMPDIR");
    std::string place = chosen != nullptr ? chosen : "";
    while (place.size() > 1 && place.back() == '/')
        place.pop_back();
    const bool usable = place.size() > 1 && place.front() == '/' && place.find('\\') == std::string::npos;
    return usable ? place : "/tmp";
}

}  // namespace

int MakePrivateDirectory(std::string& path) {
    std::string pattern = TemporaryPlace() + "/kvlRun-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) return errno;
    MadeHere().push_back(pattern);
    path = std::move(pattern);
    return 0;
}

void RemovePrivateDirectory(std::string_view path) {
    std::vector<std::string>& made = MadeHere();
    const auto found = std::find(made.begin(), made.end(), path);
    if (found == made.end()) return;
    std::error_code ignored;
    std::filesystem::remove_all(*found, ignored);
    made.erase(found);
}

void RemoveAllPrivateDirectories() {
    while (!MadeHere().empty())
        RemovePrivateDirectory(std::string(MadeHere().back()));
}

}  // namespace kvl
