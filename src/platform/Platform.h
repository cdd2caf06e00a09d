#pragma once
// The outside that this process works with: the real one, unless a test has put another in its place.

#include "platform/Console.h"
#include "platform/FileSystem.h"
#include "platform/Surroundings.h"

namespace kvl {

struct Platform {
    FileSystem* files;           // not owned
    Console* console;            // not owned
    Surroundings* surroundings;  // not owned
};

// Process-wide; starts as the real outside.
Platform& ThePlatform();

inline FileSystem& Files() {
    return *ThePlatform().files;
}
inline Console& TheConsole() {
    return *ThePlatform().console;
}
inline Surroundings& TheSurroundings() {
    return *ThePlatform().surroundings;
}

}  // namespace kvl
