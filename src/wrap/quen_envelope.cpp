#include "wrap/quen_envelope.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstdio>
#include <cstring>

#include "wire/endian.h"

namespace ipacl::wrap {

namespace {

using wire::Order;

// The header's words travel in network order.
void store_be32(uint8_t *at, uint32_t value) { wire::store<uint32_t, Order::big>(at, value); }
uint32_t load_be32(const uint8_t *at) { return wire::load<uint32_t, Order::big>(at); }

constexpr uint32_t kHeader = IPACL_QUEN_SIZE;
constexpr size_t kOperationAt = offsetof(ipacl_quen, op);
constexpr size_t kLengthAt = offsetof(ipacl_quen, length);
constexpr size_t kReservedAt = offsetof(ipacl_quen, reserved);
constexpr size_t kText1At = offsetof(ipacl_quen, text1);
constexpr size_t kText2At = offsetof(ipacl_quen, text2);

// Copies `text` with its terminator to `at`.  The copy is not bounded by the
// text field: callers keep their texts within it, and a longer one runs on
// into the next field as it always has.  It stops at the end of the
// envelope, though, so no text can write outside the allocation.
void put_text(uint8_t *envelope, uint32_t total, size_t at, const char *text) {
    if (!text) return;
    const size_t room = total - at;
    const size_t length = strnlen(text, room);
    memcpy(envelope + at, text, length < room ? length + 1 : room);
}

uint8_t *build(const EnvelopeKind &kind, const Letter &letter, uint32_t total) {
    auto *envelope = static_cast<uint8_t *>(malloc(total));
    if (!envelope) return nullptr;
    // Every byte ends up defined: the header is cleared here, the payload
    // area below is copied or cleared.  Clearing it all at once would let
    // the compiler fold malloc and memset into calloc, out of reach of the
    // allocation-failure injection that tests rely on.
    memset(envelope, 0, kHeader);
    store_be32(envelope + kOperationAt, kind.operation);
    store_be32(envelope + kLengthAt, letter.size);
    store_be32(envelope + kReservedAt, 0);
    put_text(envelope, total, kText1At, letter.text1);
    put_text(envelope, total, kText2At, letter.text2);
    if (letter.payload)
        memcpy(envelope + kHeader, letter.payload, letter.size);
    else
        memset(envelope + kHeader, 0, letter.size);
    return envelope;
}

}  // namespace

uint32_t send_envelope(const EnvelopeKind &kind, uint32_t handle, const Letter &letter, char *err) {
    // A payload too large to fit behind the header in a 32-bit size cannot
    // be enveloped at all: the same outcome as an allocation that fails.
    uint8_t *envelope =
        letter.size <= UINT32_MAX - kHeader ? build(kind, letter, letter.size + kHeader) : nullptr;
    if (!envelope) {
        if (err) sprintf(err, "%s", kind.no_memory);
        return IPACL_E_NO_MEM;
    }
    // The platform copies the message before vel_send returns.
    const uint32_t rc = send_along(kind.route, handle, letter.opcode, envelope,
                                   letter.size + kHeader, letter.rr_handle, letter.token, err);
    free(envelope);
    return rc;
}

Opened open_envelope(void *message, uint32_t size) {
    const auto *bytes = static_cast<const uint8_t *>(message);
    // The payload starts right after the header, whether or not the message
    // is that long: the caller learns from `consistent` whether to read it.
    // The address is computed as an integer: a pointer sum past a short
    // message would be undefined.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    void *payload = reinterpret_cast<void *>(reinterpret_cast<uintptr_t>(message) + kHeader);
    // A message too short to hold the length word states no length.
    const uint32_t length = size >= kLengthAt + 4 ? load_be32(bytes + kLengthAt) : 0;
    // A message shorter than the header never agrees with its length, even
    // when the length happens to equal the wrapped-around difference.
    const bool consistent = size >= kHeader && length == size - kHeader;
    return {payload, length, consistent};
}

}  // namespace ipacl::wrap
