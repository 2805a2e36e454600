// Test executables link with --wrap=malloc: every malloc made by code in the
// executable (the static library included) comes here, so a test can make
// the n-th allocation fail without any hook in the library's interface.
#include <cstddef>
#include <cstdint>

#include "platform_double.h"

extern "C" void *__real_malloc(size_t size);

namespace {
uint32_t fail_at = 0, calls = 0;
}  // namespace

namespace ipacl_double {
void fail_malloc_after(uint32_t n) {
    fail_at = n;
    calls = 0;
}
uint32_t malloc_calls() { return calls; }
}  // namespace ipacl_double

extern "C" void *__wrap_malloc(size_t size) {
    if (fail_at) {
        ++calls;
        if (calls == fail_at) {
            fail_at = 0;
            return nullptr;
        }
    }
    return __real_malloc(size);
}
