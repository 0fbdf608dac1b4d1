#include "tests/support/allocations.h"

#include <cstddef>

namespace {
long taken = 0;
}

long allocations_so_far() {
    return taken;
}

#if defined(__SANITIZE_ADDRESS__)

// The sanitizer's own interface; not every compiler brings the header that declares it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*taken)(const volatile void*, std::size_t),
                                                         void (*given_back)(const volatile void*));

namespace {
void count_block(const volatile void*, std::size_t) {
    ++taken;
}
void ignore_block(const volatile void*) {}
const int installed = __sanitizer_install_malloc_and_free_hooks(count_block, ignore_block);
} // namespace

#else

// These stand in for the C library's own, which remain under other names.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    ++taken;
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    ++taken;
    return __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
    ++taken;
    return __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    ++taken;
    return __libc_memalign(alignment, size);
}
}

#endif
