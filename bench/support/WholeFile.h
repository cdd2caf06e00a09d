#pragma once
// Input and output of the competitors written in C++: one read, one write.

#include <cstdio>
#include <string>
#include <string_view>

namespace kvl::bench {

// The whole file; false if it cannot be read.
inline bool ReadWhole(const char* path, std::string& bytes) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) return false;
    std::fseek(file, 0, SEEK_END);
    bytes.resize(static_cast<std::size_t>(std::ftell(file)));
    std::rewind(file);
    const bool complete = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && complete;
}

inline bool WriteWhole(const char* path, std::string_view bytes) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr) return false;
    const bool complete = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && complete;
}

// The frame of a competitor: reads the first argument, lets `generate` append to the output, writes the second.
// `generate` gives false where the input is wrong.
template <class Generate>
int RunCompetitor(int argc, char** argv, Generate generate) {
    std::string input, output;
    if (argc != 3 || !ReadWhole(argv[1], input)) {
        std::fputs("usage: INPUT OUTPUT, the input readable\n", stderr);
        return 2;
    }
    if (!generate(std::string_view(input), output)) {
        std::fputs("the input does not fit\n", stderr);
        return 1;
    }
    return WriteWhole(argv[2], output) ? 0 : 1;
}

// output << a << b << c, without temporaries.
template <class... Texts>
void Append(std::string& output, Texts... texts) {
    (output.append(std::string_view(texts)), ...);
}

}  // namespace kvl::bench
