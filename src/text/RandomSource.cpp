// The universal generator: a lagged Fibonacci sequence over 97 doubles (lags 97 and 33), combined with an arithmetic
// sequence c. All its numbers are multiples of 2^-24, so that every machine draws the same ones.

#include "text/RandomSource.h"

#include <nettle/aes.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "platform/Platform.h"
#include "text/ProcessState.h"

namespace kvl {
namespace {

constexpr int kLagLong = 97, kLagShort = 33;
constexpr int kDefaultIj = 1802, kDefaultKl = 9373;
constexpr int kLargestIj = 31328, kLargestKl = 30081;
constexpr double kUnit = 1.0 / 16777216.0;
constexpr int kBitsOfEntry = 24;

int IndexBefore(int index) {
    return index == 1 ? kLagLong : index - 1;
}

// Four random numbers, each with the bits of the time, as 16 bytes: the longer text is cut.
std::array<unsigned char, 16> DrawBlock(RandomSource& source, std::uint32_t timeBits) {
    int numbers[4];
    for (int& number : numbers) {
        const auto drawn = static_cast<std::uint32_t>(RandomNext(source) * 10000.0);
        number = static_cast<int>(drawn | timeBits);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%4d%4d%4d%4d", numbers[0], numbers[1], numbers[2], numbers[3]);
    std::array<unsigned char, 16> block{};
    std::copy_n(text, block.size(), block.begin());
    return block;
}

std::string GroupedHexadecimal(const std::array<unsigned char, 16>& bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '_';
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

}  // namespace

void RandomSeed(RandomSource& source, int ij, int kl) {
    if (ij < 0 || ij > kLargestIj || kl < 0 || kl > kLargestKl) {
        ij = kDefaultIj;
        kl = kDefaultKl;
    }
    int i = (ij / 177) % 177 + 2;
    int j = ij % 177 + 2;
    int k = (kl / 169) % 178 + 1;
    int l = kl % 169;
    for (int entry = 1; entry <= kLagLong; ++entry) {
        double sum = 0.0;
        double bitValue = 0.5;
        for (int bit = 0; bit < kBitsOfEntry; ++bit) {
            const int m = (((i * j) % 179) * k) % 179;
            i = j;
            j = k;
            k = m;
            l = (53 * l + 1) % 169;
            if ((l * m) % 64 >= 32) sum += bitValue;
            bitValue *= 0.5;
        }
        source.u[static_cast<std::size_t>(entry)] = sum;
    }
    source.c = 362436.0 * kUnit;
    source.cd = 7654321.0 * kUnit;
    source.cm = 16777213.0 * kUnit;
    source.i97 = kLagLong;
    source.j97 = kLagShort;
    source.seeded = true;
}

double RandomNext(RandomSource& source) {
    if (!source.seeded) RandomSeed(source, kDefaultIj, kDefaultKl);
    double& entry = source.u[static_cast<std::size_t>(source.i97)];
    double x = entry - source.u[static_cast<std::size_t>(source.j97)];
    if (x <= 0.0) x += 1.0;
    entry = x;
    source.i97 = IndexBefore(source.i97);
    source.j97 = IndexBefore(source.j97);
    source.c -= source.cd;
    if (source.c < 0.0) source.c += source.cm;
    x -= source.c;
    if (x < 0.0) x += 1.0;
    return x;
}

std::string MakeGuidText() {
    RandomSource& source = Process().random;
    const auto seconds = static_cast<std::uint32_t>(TheSurroundings().Now());
    const std::array<unsigned char, 16> block = DrawBlock(source, seconds << 2);
    const std::array<unsigned char, 16> key = DrawBlock(source, seconds << 4);
    return GroupedHexadecimal(EncryptBlock(key, block));
}

std::array<unsigned char, 16> EncryptBlock(const std::array<unsigned char, 16>& key,
                                           const std::array<unsigned char, 16>& block) {
    aes128_ctx context{};
    aes128_set_encrypt_key(&context, key.data());
    std::array<unsigned char, 16> result{};
    aes128_encrypt(&context, result.size(), result.data(), block.data());
    return result;
}

}  // namespace kvl
