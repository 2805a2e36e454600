#include "str/record/profile_name.h"

#include <cstdio>

#include "platform/if_index.h"

namespace ipacl {

ProfileName::ProfileName(const char *name) {
    if (name[0] == '\0')
        snprintf(text, sizeof text, "''");
    else
        __strcpy_to_buf(text, name, sizeof text);
}

}  // namespace ipacl
