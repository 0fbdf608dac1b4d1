#include "tests/support/failing_calls.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <utility>

namespace {

failing_call chosen = failing_call::none;
int countdown = 0;
std::size_t largest = 0;

bool fails_now(failing_call kind) {
    if (kind != chosen || --countdown != 0) return false;
    errno = ENOSPC;
    return true;
}

} // namespace

void fail_call(failing_call kind, int number) {
    chosen = kind;
    countdown = number;
}

bool stop_failing() {
    chosen = failing_call::none;
    return countdown <= 0;
}

std::size_t largest_array_asked() {
    return std::exchange(largest, 0);
}

// The linker sends every call of NAME to __wrap_NAME, and __real_NAME is the function itself.
extern "C" {
std::FILE* __real_fopen(const char* path, const char* mode);
std::FILE* __wrap_fopen(const char* path, const char* mode);
std::FILE* __wrap_fopen(const char* path, const char* mode) {
    return fails_now(failing_call::open) ? nullptr : __real_fopen(path, mode);
}

std::size_t __real_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
    return fails_now(failing_call::read) ? 0 : __real_fread(to, size, count, file);
}

// A full disk takes half of it.
std::size_t __real_fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file) {
    if (!fails_now(failing_call::write)) return __real_fwrite(from, size, count, file);
    __real_fwrite(from, size * count / 2, 1, file);
    errno = ENOSPC;
    return 0;
}

int __real_fclose(std::FILE* file);
int __wrap_fclose(std::FILE* file);
int __wrap_fclose(std::FILE* file) {
    const bool fails = fails_now(failing_call::close);
    const int result = __real_fclose(file);
    if (fails) errno = EIO;
    return fails ? EOF : result;
}

// new (std::nothrow) of arrays and of objects.
void* __real__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
void* __wrap__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
void* __wrap__ZnamRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    largest = std::max(largest, size);
    return fails_now(failing_call::array) ? nullptr : __real__ZnamRKSt9nothrow_t(size, tag);
}

void* __real__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag);
void* __wrap__ZnwmRKSt9nothrow_t(std::size_t size, const std::nothrow_t& tag) {
    return fails_now(failing_call::object) ? nullptr : __real__ZnwmRKSt9nothrow_t(size, tag);
}
}
