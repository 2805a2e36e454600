// The messages that carry one filter, built in network order as they go on
// the wire: the record alone, the configuration request and the standby's
// sync update.
#pragma once

#include <ipacl/records.h>

#include <cstdint>
#include <vector>

namespace ipacl_tool {

std::vector<uint8_t> filter_record_message(const ipacl_filter &filter);
// An ipacl_filter_cfg of one filter; word 4 is the operation (ipacl_conf_op).
std::vector<uint8_t> filter_cfg_message(const ipacl_filter &filter, uint32_t conf_op);
// An ipacl_filter_sync; word 0 the operation (ipacl_sync_op), word 4 the
// manager's sequence number.
std::vector<uint8_t> filter_sync_message(const ipacl_filter &filter, uint32_t sync_op,
                                         uint32_t sequence);

}  // namespace ipacl_tool
