// What this program puts in the header words that the library only carries:
// the manager and its clients agree on them, the library does not look at
// them.  `encode` writes them, `decode` names them, the demo uses them.
#pragma once

#include <cstdint>

namespace ipacl_tool {

// ipacl_filter_cfg, ipacl_prof_cfg, ipacl_if_prof_cfg: word 4 is the
// configuration operation (ipacl_conf_op).
// ipacl_*_sync and ipacl_*_sync_op: word 0 is the sync operation
// (ipacl_sync_op), word 4 the manager's sequence number of the change.

// Operation codes of the requests the demo's client sends the manager.
constexpr uint32_t opcode_filter_cfg = 0x0101;   // an ipacl_filter_cfg
constexpr uint32_t opcode_filter_quen = 0x0102;  // the same, in a quen envelope
constexpr uint32_t opcode_filter_list = 0x0103;  // an ipacl_filter_req: the profile's filters
constexpr uint32_t opcode_stop = 0x01ff;         // the demo is over
// ... and of the updates the manager sends its standby copy.
constexpr uint32_t opcode_filter_sync = 0x0201;  // an ipacl_filter_sync

}  // namespace ipacl_tool
