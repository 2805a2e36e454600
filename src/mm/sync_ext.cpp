// Variable-length sync buffers: an operation buffer is a fixed part and n
// items, a record buffer is at least one record.  One engine serves all six
// kinds, each described by its fixed part, its item size and its minimum.
#include <cstdlib>

#include <ipacl/mm.h>

#include "mm/zeroed_block.h"

namespace ipacl::mm {
namespace {

struct SyncBuffer {
    uint32_t fixed;  // bytes before the items (op buffers) or minimum (records)
    uint32_t item;   // bytes per item; 0 for record buffers
};

// The op buffers' fixed parts run up to and including their item count.
constexpr SyncBuffer kProfSyncOp{sizeof(ipacl_prof_sync_op), sizeof(ipacl_filter_key)};
constexpr SyncBuffer kIfProfSyncOp{sizeof(ipacl_if_prof_sync_op), sizeof(ipacl_prof_info)};
constexpr SyncBuffer kFilterSyncOp{sizeof(ipacl_filter_sync_op), sizeof(ipacl_filter_key)};
constexpr SyncBuffer kProfSync{sizeof(ipacl_prof_sync), 0};
constexpr SyncBuffer kIfProfSync{sizeof(ipacl_if_prof_sync), 0};
constexpr SyncBuffer kFilterSync{sizeof(ipacl_filter_sync), 0};

static_assert(kProfSyncOp.fixed == 92 && kProfSyncOp.item == 72);
static_assert(kIfProfSyncOp.fixed == 96 && kIfProfSyncOp.item == 84);
static_assert(kFilterSyncOp.fixed == 250 && kFilterSyncOp.item == 72);
static_assert(kProfSync.fixed == 88 && kIfProfSync.fixed == 92 && kFilterSync.fixed == 246);

template <typename T>
ipacl_rc allocate(uint32_t bytes, T **out) {
    *out = static_cast<T *>(zeroed_block(bytes));
    return *out ? IPACL_OK : IPACL_E_NO_MEM;
}

// 32-bit size arithmetic, as the wire format counts it; n stays small.
template <const SyncBuffer &B, typename T>
ipacl_rc new_op(uint32_t n, T **out) {
    if (!out) return IPACL_E_BAD_ARG;
    return allocate(B.fixed + B.item * n, out);
}

template <const SyncBuffer &B, typename T>
ipacl_rc new_record(uint32_t size, T **out) {
    if (!out || size < B.fixed) return IPACL_E_BAD_ARG;
    return allocate(size, out);
}

}  // namespace
}  // namespace ipacl::mm

extern "C" {

using namespace ipacl::mm;

ipacl_rc ipacl_new_prof_sync_op_ext(uint32_t n, ipacl_prof_sync_op **out) {
    return new_op<kProfSyncOp>(n, out);
}
ipacl_rc ipacl_new_if_prof_sync_op_ext(uint32_t n, ipacl_if_prof_sync_op **out) {
    return new_op<kIfProfSyncOp>(n, out);
}
ipacl_rc ipacl_new_filter_sync_op_ext(uint32_t n, ipacl_filter_sync_op **out) {
    return new_op<kFilterSyncOp>(n, out);
}
ipacl_rc ipacl_new_prof_sync_ext(uint32_t size, ipacl_prof_sync **out) {
    return new_record<kProfSync>(size, out);
}
ipacl_rc ipacl_new_if_prof_sync_ext(uint32_t size, ipacl_if_prof_sync **out) {
    return new_record<kIfProfSync>(size, out);
}
ipacl_rc ipacl_new_filter_sync_ext(uint32_t size, ipacl_filter_sync **out) {
    return new_record<kFilterSync>(size, out);
}

// free(NULL) is already a no-op.
void ipacl_free_prof_sync_op_ext(ipacl_prof_sync_op *buf) { free(buf); }
void ipacl_free_if_prof_sync_op_ext(ipacl_if_prof_sync_op *buf) { free(buf); }
void ipacl_free_filter_sync_op_ext(ipacl_filter_sync_op *buf) { free(buf); }
void ipacl_free_prof_sync_ext(ipacl_prof_sync *buf) { free(buf); }
void ipacl_free_if_prof_sync_ext(ipacl_if_prof_sync *buf) { free(buf); }
void ipacl_free_filter_sync_ext(ipacl_filter_sync *buf) { free(buf); }

}  // extern "C"
