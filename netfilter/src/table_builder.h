// A new filter table assembled from the entries of the one read (kept with
// their counters) and new entries, chain by chain; then the replace request
// and the counters to add back once the kernel has taken it.
#pragma once

#include "byte_buffer.h"
#include "table_image.h"

#include <cstdint>

namespace ipacl_nf {

class table_builder {
  public:
    // `arena` holds the new entries; both must outlive the builder.
    table_builder(const table_image &image, const byte_buffer &arena);

    // Opens a chain; the next piece added is its first rule (or its end).
    bool start_chain(const char *name, int32_t hook);
    // Closes the open chain at the last piece added (its policy or RETURN).
    void end_chain();

    // An entry of the table read; a jump in it follows its chain by name.
    bool add_old(uint32_t index);
    // An entry of the arena; `jump` names the chain it jumps to, if any.
    bool add_new(uint32_t arena_offset, const char *jump);

    uint32_t piece_count() const { return pieces_.size(); }

    // The IPT_SO_SET_REPLACE request; `old_counters` receives the counters
    // of the table replaced (one per entry read).
    uint32_t compose(byte_buffer &request, grow_array<xt_counters> &old_counters, char *err);
    // The IPT_SO_SET_ADD_COUNTERS request: the counters of every entry kept.
    uint32_t counters_request(const grow_array<xt_counters> &old_counters, byte_buffer &request,
                              char *err) const;

  private:
    struct piece {
        uint32_t old_index;     // kNoIndex for a new entry
        uint32_t arena_offset;  // new entries only
        const char *jump;       // chain jumped to, by name; nullptr for none
        uint32_t jump_old;      // a jump into the middle of a chain: that entry
    };
    struct chain_plan {
        const char *name;
        int32_t hook;
        uint32_t head;  // piece of the first rule
        uint32_t end;   // piece of the policy or RETURN
    };

    const uint8_t *bytes(const piece &p) const;
    uint32_t size(const piece &p) const;
    uint32_t head_offset(const char *name, const grow_array<uint32_t> &offsets) const;
    uint32_t resolve_jumps(uint8_t *entries, const grow_array<uint32_t> &offsets, char *err) const;

    const table_image &image_;
    const byte_buffer &arena_;
    grow_array<piece> pieces_;
    grow_array<chain_plan> chains_;
};

}  // namespace ipacl_nf
