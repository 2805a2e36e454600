// The formatters of records in network byte order: each converts a local
// copy to host order and formats the copy, so the caller's record (often a
// message payload still to be forwarded) stays as it was.
#include <ipacl/str_record.h>
#include <ipacl/wire.h>

namespace {

// One twin: `Convert` is the record's network-to-host converter, `Format`
// the host-order formatter.  The copy starts zeroed, so that the bytes the
// converter does not write (past a name's NUL, spare fields) are defined.
// Converting into a separate record only reads the source, which is why the
// caller's const record may be handed to the converter.
template <typename Record, void (*Convert)(Record *, Record *), auto Format>
auto from_network(const Record *rec, char *dst) {
    if (rec == nullptr || dst == nullptr) return Format(nullptr, dst);
    Record host{};
    Convert(const_cast<Record *>(rec), &host);
    return Format(&host, dst);
}

}  // namespace

extern "C" {

void ipacl_str_prof_key_net(const ipacl_prof_key *key, char *dst) {
    from_network<ipacl_prof_key, ipacl_ntoh_prof_key, ipacl_str_prof_key>(key, dst);
}

uint32_t ipacl_str_prof_net(const ipacl_prof *prof, char *dst) {
    return from_network<ipacl_prof, ipacl_ntoh_prof, ipacl_str_prof>(prof, dst);
}

uint32_t ipacl_str_if_prof_key_net(const ipacl_if_prof_key *key, char *dst) {
    return from_network<ipacl_if_prof_key, ipacl_ntoh_if_prof_key, ipacl_str_if_prof_key>(key, dst);
}

uint32_t ipacl_str_if_prof_net(const ipacl_if_prof *if_prof, char *dst) {
    return from_network<ipacl_if_prof, ipacl_ntoh_if_prof, ipacl_str_if_prof>(if_prof, dst);
}

uint32_t ipacl_str_filter_key_net(const ipacl_filter_key *key, char *dst) {
    return from_network<ipacl_filter_key, ipacl_ntoh_filter_key, ipacl_str_filter_key>(key, dst);
}

uint32_t ipacl_str_filter_net(const ipacl_filter *filter, char *dst) {
    return from_network<ipacl_filter, ipacl_ntoh_filter, ipacl_str_filter>(filter, dst);
}

}  // extern "C"
