#include "platform/SystemPath.h"

#include <algorithm>
#include <cerrno>

namespace kvl {
namespace {

bool HasDriveLetter(std::string_view path) {
    if (path.size() < 2 || path[1] != ':') return false;
    const char lower = static_cast<char>(path[0] | 0x20);
    return lower >= 'a' && lower <= 'z';
}

}  // namespace

int ToSystemPath(std::string_view path, std::string& systemPath) {
    if (path.empty() || HasDriveLetter(path)) return ENOENT;
    if (path.find('\0') != std::string_view::npos) return EINVAL;
    systemPath = path;
    std::replace(systemPath.begin(), systemPath.end(), '\\', '/');
    return 0;
}

int FoldError(int error) {
    switch (error) {
        case ENOTDIR:
        case ELOOP:
            return ENOENT;
        case ENAMETOOLONG:
            return EINVAL;
        default:
            return error;
    }
}

}  // namespace kvl
