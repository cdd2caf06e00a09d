#include <cstdlib>

#include "platform/Console.h"
#include "platform/PrivateDirectories.h"
#include "platform/Surroundings.h"

namespace kvl {
namespace {

class SurroundingsOfProcess : public Surroundings {
public:
    std::int64_t Now() override { return std::time(nullptr); }

    bool LocalTime(std::int64_t seconds, std::tm& parts) override {
        const std::time_t time = seconds;
        return localtime_r(&time, &parts) != nullptr;
    }

    bool GetEnvironment(const char* name, std::string& value) override {
        const char* found = std::getenv(name);
        if (found == nullptr) return false;
        value = found;
        return true;
    }

    // No destructor of a static object runs: the place from which this is called may still use them all.
    [[noreturn]] void EndProcess(int exitValue) override {
        SystemConsole().Flush();
        RemoveAllPrivateDirectories();
        std::_Exit(exitValue);
    }
};

}  // namespace

Surroundings& SystemSurroundings() {
    static SurroundingsOfProcess surroundings;
    return surroundings;
}

}  // namespace kvl
