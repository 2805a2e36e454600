// Record size and slots per chunk of each memory type the manager pools.
#include <ipacl/enums.h>
#include <ipacl/mm.h>
#include <ipacl/records.h>

namespace ipacl::mm {
namespace {

struct MemTypeSize {
    uint32_t record;     // bytes per slot
    uint32_t per_chunk;  // slots per chunk
};

// Indexed by ipacl_mem_type.  The big, numerous records come 32 to a chunk;
// the kest and sync records, few at a time, 4.  The kest records are the
// stored values (their key apart); the sync interface record has no type
// of its own.
constexpr MemTypeSize kMemTypeSizes[] = {
    {sizeof(ipacl_list), 32},         // IPACL_MEM_TYPE_ACCESS_LIST
    {sizeof(ipacl_intf), 32},         // IPACL_MEM_TYPE_ACCESS_INTF
    {sizeof(ipacl_group), 32},        // IPACL_MEM_TYPE_ACCESS_GROUP
    {sizeof(ipacl_data), 32},         // IPACL_MEM_TYPE_ACCESS_DATA
    {100, 4},                         // IPACL_MEM_TYPE_KEST_LIST
    {104, 4},                         // IPACL_MEM_TYPE_KEST_GROUP
    {258, 4},                         // IPACL_MEM_TYPE_KEST_DATA
    {sizeof(ipacl_if_prof), 4},       // IPACL_MEM_TYPE_IF_PROF
    {sizeof(ipacl_prof_sync), 4},     // IPACL_MEM_TYPE_SYNC_PROF
    {sizeof(ipacl_if_prof_sync), 4},  // IPACL_MEM_TYPE_SYNC_IF_PROF
    {sizeof(ipacl_filter_sync), 4},   // IPACL_MEM_TYPE_SYNC_FILTER
    {276, 4},                         // IPACL_MEM_TYPE_SYNC_INTF
};
static_assert(sizeof kMemTypeSizes / sizeof kMemTypeSizes[0] == IPACL_MEM_TYPE_SYNC_INTF + 1);

constexpr MemTypeSize size_of(uint32_t mem_type) {
    constexpr uint32_t known = sizeof kMemTypeSizes / sizeof kMemTypeSizes[0];
    return mem_type < known ? kMemTypeSizes[mem_type] : MemTypeSize{0, 0};
}

}  // namespace
}  // namespace ipacl::mm

extern "C" {

uint32_t ipacl_sizeof_mem(uint32_t mem_type) { return ipacl::mm::size_of(mem_type).record; }

uint32_t ipacl_sizeof_mem_chunk(uint32_t mem_type) {
    return ipacl::mm::size_of(mem_type).per_chunk;
}

}  // extern "C"
