// A number member of a packed record, read through a member pointer.  The
// records are packed, so a member may sit at any address, and a member
// pointer does not carry the packing: the value is copied out byte-wise.
#pragma once

#include <cstring>

namespace ipacl {

template <typename Record, typename Member>
Member member_value(const Record &record, Member Record::*member) {
    Member value;
    std::memcpy(&value, &(record.*member), sizeof value);
    return value;
}

}  // namespace ipacl
