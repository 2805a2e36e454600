// The profile name as the one-line formatters print it.
#pragma once

#include <ipacl/records.h>

namespace ipacl {

// A local copy of a profile name, made with the platform's bounded copy so
// that a name filling its whole field still ends inside the buffer.  An
// empty name reads "''": the line keeps its number of words, so a reader
// that splits it on blanks finds every field in its place.
struct ProfileName {
    char text[IPACL_NAME_SIZE];
    explicit ProfileName(const char *name);
};

}  // namespace ipacl
