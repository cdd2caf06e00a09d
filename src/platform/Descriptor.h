#pragma once
// A file descriptor that closes itself, and the loops around read and write. For the files of this folder only.

#include <cstddef>
#include <string_view>

namespace kvl {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept;
    ~Descriptor();

    int Number() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }
    int Release();

private:
    int number_ = -1;
};

// open(2) without interruptions, closed for child processes, and never taking a terminal as the controlling one. Not
// open when it fails, with the reason in errno.
Descriptor OpenDescriptor(const char* path, int flags, unsigned mode = 0);
Descriptor OpenDescriptorAt(int directory, const char* name, int flags, unsigned mode = 0);

// Reads up to `capacity` bytes; waits for a descriptor that does not block. 0 or an error number.
int ReadSome(int descriptor, char* buffer, std::size_t capacity, std::size_t& count);
// Writes all bytes. 0 or an error number.
int WriteFully(int descriptor, std::string_view bytes);
// Copies what lies behind the reading position to the writing position. 0 or an error number.
int CopyRest(int from, int to);

// What the process needs before it opens or writes anything: descriptors 0 to 2 are open, so that no file can take the
// place of the console, and a write that nobody takes is an error instead of a signal. Does its work once.
void PrepareDescriptors();

}  // namespace kvl
