// Sizes of the records kept in the platform's persistent store (kest), by
// kest type: the key, the value, and the smallest value accepted.
#pragma once

#include <cstddef>

#include <ipacl/enums.h>
#include <ipacl/records.h>

namespace ipacl::wire {

struct KestSizes {
    uint32_t type;
    uint32_t key;
    uint32_t value;
    // Deliberately below the data value size: a data value of 196 to 257
    // bytes passes the check.
    uint32_t min_value;
};

inline constexpr KestSizes kKestSizes[] = {
    {IPACL_KEST_TYPE_LIST, sizeof(ipacl_list_key), 100, 100},
    {IPACL_KEST_TYPE_DATA, sizeof(ipacl_data_key), 258, 196},
    {IPACL_KEST_TYPE_GROUP, sizeof(ipacl_group_key), 104, 104},
};

inline const KestSizes *find_kest(uint32_t type) {
    for (const KestSizes &k : kKestSizes)
        if (k.type == type) return &k;
    return nullptr;
}

}  // namespace ipacl::wire
