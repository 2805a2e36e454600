// The rules of the live IPv6 filter table as ipacl_nf_rule6 records.
#include "entry_reader.h"
#include "kernel_socket.h"
#include "nf_error.h"
#include "table_image.h"

#include <ipacl/netfilter.h>

#include <cstring>

extern "C" {

IPACL_NF_API uint32_t ipacl_nf_rules6(const char *chain, ipacl_nf_rule6 *rules, uint32_t *count,
                                      char *err) {
    using namespace ipacl_nf;
    if (!count || (!rules && *count > 0)) return fail(err, IPACL_E_BAD_ARG, "bad rule buffer");
    xt_socket socket(ipv6_layout());
    table_image image;
    if (uint32_t rc = socket.open(err)) return rc;
    if (uint32_t rc = image.read(socket, err)) return rc;
    bool every = !chain || !chain[0];
    if (!every && image.chain_named(chain) == kNoIndex)
        return fail(err, IPACL_NF_E_BAD_CHAIN, "no chain '%s'", chain);
    uint32_t room = *count, total = 0;
    for (uint32_t c = 0; c < image.chain_count(); ++c) {
        const chain_view &view = image.chain(c);
        if (!every && std::strcmp(view.name, chain) != 0) continue;
        for (uint32_t e = view.first; e < view.end; ++e, ++total)
            if (total < room) read_ipv6_rule(image, e, rules[total]);
    }
    *count = total;
    if (total > room)
        return fail(err, IPACL_NF_E_SHORT_BUFFER, "%u of %u records fit in %u", room, total, room);
    return succeed(err);
}
}
