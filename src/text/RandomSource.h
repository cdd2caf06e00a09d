#pragma once
// The universal random number generator of Marsaglia, Zaman and Tsang, and the unique texts made from it.

#include <array>
#include <string>

namespace kvl {

// Plain state; one lives in the process state. Never seeded but by default, so every run draws the same sequence.
struct RandomSource {
    std::array<double, 98> u{};  // u[1] to u[97]
    double c = 0, cd = 0, cm = 0;
    int i97 = 0, j97 = 0;
    bool seeded = false;
};

// Seeds outside 0..31328 and 0..30081 are replaced, both, by 1802 and 9373.
void RandomSeed(RandomSource& source, int ij, int kl);
// The next double in 0 to 1.
double RandomNext(RandomSource& source);

// A new GUID text: 32 upper-case hexadecimal digits in groups 8-4-4-4-12 joined by "_". Uses the process's random
// source and the present time.
std::string MakeGuidText();

// AES-128 of one block, without chaining.
std::array<unsigned char, 16> EncryptBlock(const std::array<unsigned char, 16>& key,
                                           const std::array<unsigned char, 16>& block);

}  // namespace kvl
