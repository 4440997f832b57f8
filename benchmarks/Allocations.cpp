#include "Allocations.h"

#include <cstddef>

// The program's own malloc() comes before the C library's, whose function it calls.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
}

namespace {
long sCount = 0;
}

extern "C" void *malloc(std::size_t size)
{
    ++sCount;
    return __libc_malloc(size);
}

extern "C" void *calloc(std::size_t count, std::size_t size)
{
    ++sCount;
    return __libc_calloc(count, size);
}

extern "C" void *realloc(void *memory, std::size_t size)
{
    ++sCount;
    return __libc_realloc(memory, size);
}

long allocations()
{
    return sCount;
}
