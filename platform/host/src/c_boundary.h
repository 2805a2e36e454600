// The edge between the C functions and the C++ inside them: no exception
// may cross it.  Running out of memory becomes ENOMEM; anything else thrown
// by the standard library (it should not happen) becomes EIO.
#pragma once

#include <cerrno>
#include <new>

namespace ipacl_host {

// Runs body and returns what it returns; if it throws, sets errno and
// returns `failed`.
template <typename Result, typename Body>
Result c_boundary(Result failed, Body &&body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc &) {
        errno = ENOMEM;
    } catch (...) {
        errno = EIO;
    }
    return failed;
}

}  // namespace ipacl_host
