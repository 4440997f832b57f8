#include "AllocationCounter.h"

#include <algorithm>
#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define K7E_SANITIZER_HOOKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define K7E_SANITIZER_HOOKS
#endif
#endif

namespace {

struct Counter
{
    bool isCounting = false;
    std::int64_t live = 0;
    AllocationCounter::Counts counts;
};
thread_local Counter counter;

void allocated(std::size_t size)
{
    if (!counter.isCounting)
        return;
    const auto bytes = static_cast<std::int64_t>(size);
    ++counter.counts.calls;
    counter.counts.bytes += bytes;
    counter.live += bytes;
    counter.counts.peak = std::max(counter.counts.peak, counter.live);
}

void freed(std::size_t size)
{
    if (counter.isCounting)
        counter.live -= static_cast<std::int64_t>(size);
}

} // namespace

#ifdef K7E_SANITIZER_HOOKS

extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*malloc_hook)(const volatile void *,
                                                                  std::size_t),
                                              void (*free_hook)(const volatile void *));
std::size_t __sanitizer_get_allocated_size(const volatile void *memory);
}

namespace {

void installHooks()
{
    static const int installed = __sanitizer_install_malloc_and_free_hooks(
        [](const volatile void *, std::size_t size) { allocated(size); },
        [](const volatile void *memory) {
            if (memory)
                freed(__sanitizer_get_allocated_size(memory));
        });
    static_cast<void>(installed);
}

} // namespace

#else

#include <malloc.h>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void __libc_free(void *memory);

void *malloc(std::size_t size)
{
    void *const memory = __libc_malloc(size);
    allocated(malloc_usable_size(memory));
    return memory;
}

void *calloc(std::size_t count, std::size_t size)
{
    void *const memory = __libc_calloc(count, size);
    allocated(malloc_usable_size(memory));
    return memory;
}

// Both blocks count at a time, as if it was always copied.
void *realloc(void *old, std::size_t size)
{
    const std::size_t before = malloc_usable_size(old);
    void *const memory = __libc_realloc(old, size);
    if (memory || size == 0) {
        allocated(malloc_usable_size(memory));
        freed(before);
    }
    return memory;
}

void free(void *memory)
{
    freed(malloc_usable_size(memory));
    __libc_free(memory);
}
}

namespace {

void installHooks()
{
}

} // namespace

#endif

void AllocationCounter::start()
{
    installHooks();
    counter = {true, 0, {}};
}

AllocationCounter::Counts AllocationCounter::stop()
{
    counter.isCounting = false;
    return counter.counts;
}
