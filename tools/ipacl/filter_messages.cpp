#include "filter_messages.h"

#include <ipacl/wire.h>

namespace ipacl_tool {
namespace {

template <typename Message>
Message &view(std::vector<uint8_t> &bytes) {
    return *reinterpret_cast<Message *>(bytes.data());  // packed: any address will do
}

}  // namespace

std::vector<uint8_t> filter_record_message(const ipacl_filter &filter) {
    std::vector<uint8_t> bytes(sizeof(ipacl_filter));
    ipacl_filter &record = view<ipacl_filter>(bytes);
    record = filter;
    ipacl_hton_filter(&record, &record);
    return bytes;
}

std::vector<uint8_t> filter_cfg_message(const ipacl_filter &filter, uint32_t conf_op) {
    std::vector<uint8_t> bytes(sizeof(ipacl_filter_cfg) + sizeof(ipacl_filter));
    ipacl_filter_cfg &cfg = view<ipacl_filter_cfg>(bytes);
    cfg.count = 1;
    cfg.word4 = conf_op;
    cfg.filters[0] = filter;
    ipacl_hton_filter_cfg(&cfg, &cfg);
    return bytes;
}

std::vector<uint8_t> filter_sync_message(const ipacl_filter &filter, uint32_t sync_op,
                                         uint32_t sequence) {
    std::vector<uint8_t> bytes(sizeof(ipacl_filter_sync));
    ipacl_filter_sync &sync = view<ipacl_filter_sync>(bytes);
    sync.word0 = sync_op;
    sync.word4 = sequence;
    sync.filter = filter;
    ipacl_hton_filter_sync(&sync, &sync);
    return bytes;
}

}  // namespace ipacl_tool
