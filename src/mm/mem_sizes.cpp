// Record size and slots per chunk of each memory type the manager pools.
#include <ipacl/enums.h>
#include <ipacl/mm.h>

namespace ipacl::mm {
namespace {

struct MemTypeSize {
    uint32_t record;     // bytes per slot
    uint32_t per_chunk;  // slots per chunk
};

// Indexed by ipacl_mem_type.  The big, numerous records come 32 to a chunk;
// the kest and sync records, few at a time, 4.
constexpr MemTypeSize kMemTypeSizes[] = {
    {1204, 32},  // IPACL_MEM_TYPE_ACCESS_LIST
    {40, 32},    // IPACL_MEM_TYPE_ACCESS_INTF
    {160, 32},   // IPACL_MEM_TYPE_ACCESS_GROUP
    {290, 32},   // IPACL_MEM_TYPE_ACCESS_DATA
    {100, 4},    // IPACL_MEM_TYPE_KEST_LIST
    {104, 4},    // IPACL_MEM_TYPE_KEST_GROUP
    {258, 4},    // IPACL_MEM_TYPE_KEST_DATA
    {84, 4},     // IPACL_MEM_TYPE_IF_PROF
    {88, 4},     // IPACL_MEM_TYPE_SYNC_PROF
    {92, 4},     // IPACL_MEM_TYPE_SYNC_IF_PROF
    {246, 4},    // IPACL_MEM_TYPE_SYNC_FILTER
    {276, 4},    // IPACL_MEM_TYPE_SYNC_INTF
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
