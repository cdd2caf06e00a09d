#include "driver/RunProgram.h"
#include "platform/Surroundings.h"

int main(int argc, char** argv) {
    kvl::LimitMemory();
    return kvl::RunProgram(argc, argv) ? 0 : 1;
}
