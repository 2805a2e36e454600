// One-line text of an interface-profile binding and of its key.
#include <cstdio>

#include <ipacl/enums.h>
#include <ipacl/str_record.h>
#include <ipacl/str_scalar.h>

#include "str/record/profile_name.h"

extern "C" {

uint32_t ipacl_str_if_prof_key(const ipacl_if_prof_key *key, char *dst) {
    if (dst == nullptr) return 0;
    if (key == nullptr) return static_cast<uint32_t>(sprintf(dst, "%s", ""));
    char intf[IPACL_STR_SIZE], dir[IPACL_STR_SIZE];
    ipacl_str_if_index(key->if_index, intf);
    ipacl_str_dir(key->direction, dir);
    return static_cast<uint32_t>(sprintf(dst, "%s %s", intf, dir));
}

// The interface shows twice: by the platform's name and by its raw index,
// which stays readable when the platform no longer knows the interface.
uint32_t ipacl_str_if_prof(const ipacl_if_prof *if_prof, char *dst) {
    if (dst == nullptr) return 0;
    if (if_prof == nullptr) return static_cast<uint32_t>(sprintf(dst, "%s", ""));
    char status[IPACL_STR_SIZE], intf[IPACL_STR_SIZE], dir[IPACL_STR_SIZE];
    ipacl_str_snmp_status(if_prof->snmp_status, status);
    ipacl_str_if_index(if_prof->if_index, intf);
    ipacl_str_dir(if_prof->direction, dir);
    const ipacl::ProfileName name(if_prof->prof_name);
    return static_cast<uint32_t>(
        sprintf(dst, "%s %s(0x%x) %s prof %s", status, intf, if_prof->if_index, dir, name.text));
}

}  // extern "C"
