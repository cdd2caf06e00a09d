#include "platform/Platform.h"

namespace kvl {

Platform& ThePlatform() {
    static Platform platform{&SystemFiles(), &SystemConsole(), &SystemSurroundings()};
    return platform;
}

}  // namespace kvl
