#ifndef CRC32_P_H
#define CRC32_P_H

#include <QtGlobal>

#include <array>
#include <cstddef>

#ifdef Q_PROCESSOR_X86_64
#include <cpuid.h>
#include <immintrin.h>
#endif

/*!
    \internal
    CRC-32 with the reflected polynomial 0xEDB88320, on a register that holds the inverted checksum:
    start with 0xFFFFFFFF and invert the result.

    There are two ways with one result. The portable one reads 16 bytes at a time through 16 tables.
    The other one multiplies polynomials, where the processor can: a block is folded onto the next
    one until less than a block is left, then to 16 bytes, and the rest goes the portable way.
*/
namespace Crc32 {

constexpr quint32 kPolynomial = 0xEDB88320;
constexpr int kSlices = 16;

using Table = std::array<quint32, 256>;

//! Table 0 holds the checksum of each byte; table n that of the byte and n zero bytes behind it.
constexpr std::array<Table, kSlices> makeTables()
{
    std::array<Table, kSlices> tables = {};
    for (quint32 byte = 0; byte < 256; ++byte) {
        quint32 crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ ((crc & 1) != 0 ? kPolynomial : 0);
        tables[0][byte] = crc;
    }
    for (std::size_t slice = 1; slice < kSlices; ++slice) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const quint32 crc = tables[slice - 1][byte];
            tables[slice][byte] = crc >> 8 ^ tables[0][crc & 0xFF];
        }
    }
    return tables;
}

inline constexpr std::array<Table, kSlices> crc32tab = makeTables();

//! Returns the register after the \a size bytes at \a data.
inline quint32 portable(quint32 crc, const uchar *data, std::size_t size)
{
    for (; size >= kSlices; size -= kSlices, data += kSlices) {
        quint32 next = 0;
        // The first four bytes meet the register; the last one needs no zero bytes behind it.
        for (std::size_t i = 0; i < kSlices; ++i) {
            const quint32 byte = i < 4 ? (data[i] ^ crc >> (8 * i)) & 0xFF : data[i];
            next ^= crc32tab[kSlices - 1 - i][byte];
        }
        crc = next;
    }
    for (; size > 0; --size, ++data)
        crc = crc >> 8 ^ crc32tab[0][(crc ^ *data) & 0xFF];
    return crc;
}

#ifdef Q_PROCESSOR_X86_64

//! Returns whether this processor can do what folded() takes.
inline bool canFold()
{
    // __builtin_cpu_supports() would ask for every feature there is when the library is loaded.
    static const bool can = [] {
        unsigned int eax = 0;
        unsigned int ebx = 0;
        unsigned int ecx = 0;
        unsigned int edx = 0;
        constexpr unsigned int kWanted = bit_PCLMUL | bit_SSE4_1;
        return __get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0 && (ecx & kWanted) == kWanted;
    }();
    return can;
}

//! Returns x^\a exponent modulo the polynomial, reflected, and shifted as the multiplication wants
//! it.
constexpr quint64 power(int exponent)
{
    // In the reflected form the top bit is x^0, and a step to the right multiplies by x.
    quint32 value = 0x80000000;
    for (int i = 0; i < exponent; ++i)
        value = value >> 1 ^ ((value & 1) != 0 ? kPolynomial : 0);
    return static_cast<quint64>(value) << 1;
}

//! The factors that move 16 bytes on by \a Bytes bytes: one for each half.
template <std::size_t Bytes>
struct Distance
{
    static constexpr quint64 kLow = power(8 * static_cast<int>(Bytes) + 32);
    static constexpr quint64 kHigh = power(8 * static_cast<int>(Bytes) - 32);
};
static_assert(Distance<64>::kLow == 0x154442BD4 && Distance<64>::kHigh == 0x1C6E41596);

constexpr std::size_t kLaneBytes = sizeof(__m128i);

//! Returns \a value moved on by \a Bytes bytes, onto \a next.
template <std::size_t Bytes>
__attribute__((target("pclmul,sse4.1"))) inline __m128i fold(__m128i value, __m128i next)
{
    const __m128i factors = _mm_set_epi64x(static_cast<long long>(Distance<Bytes>::kHigh),
                                           static_cast<long long>(Distance<Bytes>::kLow));
    const __m128i low = _mm_clmulepi64_si128(value, factors, 0x00);
    const __m128i high = _mm_clmulepi64_si128(value, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

inline __m128i load(const uchar *from)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from));
}

//! The 16 bytes of so many lanes are on their way at a time; more of them gain nothing.
constexpr std::size_t kLanes = 4;
constexpr std::size_t kBlockBytes = kLanes * kLaneBytes;

//! Returns the register after the \a size bytes at \a data; \a size is kBlockBytes or more.
__attribute__((target("pclmul,sse4.1"))) inline quint32 folded(quint32 crc, const uchar *data,
                                                               std::size_t size)
{
    __m128i lanes[kLanes];
    for (std::size_t i = 0; i < kLanes; ++i)
        lanes[i] = load(data + i * kLaneBytes);
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(crc)));
    data += kBlockBytes;
    size -= kBlockBytes;
    for (; size >= kBlockBytes; size -= kBlockBytes, data += kBlockBytes) {
        for (std::size_t i = 0; i < kLanes; ++i)
            lanes[i] = fold<kBlockBytes>(lanes[i], load(data + i * kLaneBytes));
    }
    __m128i rest = lanes[0];
    for (std::size_t i = 1; i < kLanes; ++i)
        rest = fold<kLaneBytes>(rest, lanes[i]);
    for (; size >= kLaneBytes; size -= kLaneBytes, data += kLaneBytes)
        rest = fold<kLaneBytes>(rest, load(data));

    // What is left is a block of 16 bytes with the same checksum on a register of zero.
    alignas(__m128i) uchar bytes[kLaneBytes];
    _mm_store_si128(reinterpret_cast<__m128i *>(bytes), rest);
    return portable(portable(0, bytes, kLaneBytes), data, size);
}

#endif // Q_PROCESSOR_X86_64

//! Returns the register after the \a size bytes at \a data, by the faster way there is.
inline quint32 update(quint32 crc, const uchar *data, std::size_t size)
{
#ifdef Q_PROCESSOR_X86_64
    if (size >= kBlockBytes && canFold())
        return folded(crc, data, size);
#endif
    return portable(crc, data, size);
}

} // namespace Crc32

#endif // CRC32_P_H
