// One-line text of a protocol profile and of its key.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/str_scalar.h>

#include "str/record/profile_name.h"

extern "C" {

void ipacl_str_prof_key(const ipacl_prof_key *key, char *dst) {
    if (dst == nullptr) return;
    if (key == nullptr) {
        dst[0] = '\0';
        return;
    }
    // The name field is printed as it stands, bounded by its size.
    sprintf(dst, "prof %.*s", IPACL_NAME_SIZE, key->name[0] ? key->name : "''");
}

uint32_t ipacl_str_prof(const ipacl_prof *prof, char *dst) {
    if (dst == nullptr) return 0;
    if (prof == nullptr) return static_cast<uint32_t>(sprintf(dst, "%s", ""));
    char status[IPACL_STR_SIZE], type[IPACL_STR_SIZE], index[IPACL_STR_SIZE];
    ipacl_str_snmp_status(prof->snmp_status, status);
    ipacl_str_prof_type(prof->prof_type, type);
    ipacl_str_index(prof->last_filter_index, index);
    const ipacl::ProfileName name(prof->name);
    return static_cast<uint32_t>(sprintf(dst, "%s prof %s %s %s", status, name.text, type, index));
}

}  // extern "C"
