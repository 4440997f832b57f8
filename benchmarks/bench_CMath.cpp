#include "Pairs.h"

#include "CMath.h"

#include <zlib.h>

#include <memory>
#include <vector>

// The CRC-32 of a block beside zlib's.

namespace {

void addBlock(const char *name, std::size_t size, double ratio)
{
    const auto block = std::make_shared<std::vector<unsigned char>>(size);
    for (std::size_t i = 0; i < size; ++i)
        (*block)[i] = static_cast<unsigned char>(i * i + i / 7);
    Pairs::add(
        std::string("crc32 of ") + name, {ratio, 0, 0},
        [block] { return CMath::crc32(block->data(), static_cast<int>(block->size())); },
        [block] { return crc32(0, block->data(), static_cast<uInt>(block->size())); });
}

void addMathPairs()
{
    addBlock("16 B", 16, 1);
    addBlock("64 B", 64, 1);
    addBlock("256 B", 256, 1);
    addBlock("4 KiB", 4096, 0.33);
    addBlock("1 MiB", 1 << 20, 0.33);
    addBlock("64 MiB", 64 << 20, 0.33);
}

const Pairs::Group kGroup(&addMathPairs);

} // namespace
