// A check chain: an ordered list of steps over one record, each step a
// field check and the members of the record it reads.  The chain stops at
// the first step that fails and returns its code with its message; when
// every step passes it clears the buffer once more.  The list is expanded
// at compile time into one call after the other.
#pragma once

#include <ipacl/codes.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "base/member.h"
#include "chk/message.h"

namespace ipacl {

template <typename Record>
using ChainStep = uint32_t (*)(const Record &, char *err);

// What a step hands its check besides the message buffer: a member of the
// record, a label text as it stands, or (kWholeRecord) the record itself.
struct WholeRecord {};
inline constexpr WholeRecord kWholeRecord{};

// A text member is passed as a pointer to its first character, a number
// member by value.
template <typename Record, typename Member>
constexpr auto step_argument(const Record &record, Member Record::*member) {
    if constexpr (std::is_array_v<Member>) {
        return static_cast<const std::remove_extent_t<Member> *>(record.*member);
    } else {
        return member_value(record, member);
    }
}
template <typename Record>
constexpr const char *step_argument(const Record &, const char *label) {
    return label;
}
template <typename Record>
constexpr const Record &step_argument(const Record &record, WholeRecord) {
    return record;
}

// The step that runs `Check` on `Arguments` of a Record.
template <typename Record, auto Check, auto... Arguments>
uint32_t check_step(const Record &record, char *err) {
    return Check(step_argument(record, Arguments)..., err);
}

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
