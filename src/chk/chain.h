// A check chain: an ordered list of field checks over one record.  The
// chain stops at the first step that fails and returns its code with its
// message; when every step passes it clears the buffer once more.  The list
// is expanded at compile time into one call after the other.
#pragma once

#include <ipacl/codes.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "chk/message.h"

namespace ipacl {

template <typename Record>
using ChainStep = uint32_t (*)(const Record &, char *err);

template <const auto &Steps, typename Record, size_t... I>
uint32_t run_steps(const Record &record, char *err, std::index_sequence<I...>) {
    uint32_t rc = IPACL_OK;
    static_cast<void>((((rc = Steps[I](record, err)) == IPACL_OK) && ...));
    return rc;
}

template <const auto &Steps, typename Record>
uint32_t run_chain(const Record &record, char *err) {
    constexpr size_t kCount = sizeof Steps / sizeof Steps[0];
    if (uint32_t rc = run_steps<Steps>(record, err, std::make_index_sequence<kCount>{})) return rc;
    return pass(err);
}

}  // namespace ipacl
