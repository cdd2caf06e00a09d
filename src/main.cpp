#include "driver/RunProgram.h"

int main(int argc, char** argv) { return kvl::RunProgram(argc, argv) ? 0 : 1; }
