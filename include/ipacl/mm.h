/** @file
 * Chunked memory pool, sync buffers and key successors. */
#ifndef IPACL_MM_H
#define IPACL_MM_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** ---- chunked memory pool ------------------------------------------------
 *
 * A pool hands out equal-sized, zero-filled slots.  It is a list of chunks
 * in the order they were made; each chunk holds `count` slots and a bitmap
 * (<ipacl/bm.h>) with bit i set while slot i is in use.  Allocation takes
 * the lowest free slot of the first chunk with room and appends a chunk when
 * none has any.  A free releases at most one emptied chunk. */

typedef struct ipacl_mm_chunk {
    uint32_t used;               /**< slots in use */
    uint8_t *data;               /**< count * slot_size bytes; slot i at data + i * slot_size */
    uint8_t *bitmap;             /**< bm_size bytes */
    struct ipacl_mm_chunk *next; /**< NULL for the last chunk */
} ipacl_mm_chunk;

/** A pool of fixed-size slots, kept in chunks of `count` slots. */
typedef struct ipacl_mm {
    uint32_t count;        /**< slots per chunk */
    uint32_t slot_size;    /**< bytes per slot */
    uint32_t bm_size;      /**< (count + 7) / 8 */
    ipacl_mm_chunk *first; /**< NULL while the pool is empty */
} ipacl_mm;

/** A new, empty pool, or NULL when the descriptor cannot be allocated.  The
 * caller frees the descriptor with free() once the pool is empty. */
IPACL_API ipacl_mm *ipacl_mm_new(uint32_t count, uint32_t slot_size);

/** A zero-filled slot, or NULL: "null mem desc" for a NULL pool; "no mem for
 * data", "no mem for bitmap" or "no mem for mem chunk" when a new chunk
 * cannot be made (a half-made chunk is abandoned and the pool left as it
 * was).  `err` is cleared otherwise. */
IPACL_API void *ipacl_mm_alloc(ipacl_mm *pool, char *err);

/** Returns a slot to its pool and zeroes it.  IPACL_E_BAD_ARG with "bad mem
 * desc %p data %p" for a NULL pool or pointer; IPACL_E_FAIL when no chunk
 * holds the pointer on a slot boundary ("data %p not aligned" is left in
 * `err` for a pointer inside a slot).  A second free of the same slot is not
 * detected. */
IPACL_API ipacl_rc ipacl_mm_free(ipacl_mm *pool, void *data, char *err);

/** Slots in use over all chunks; 0 for a NULL pool. */
IPACL_API uint32_t ipacl_mm_count(const ipacl_mm *pool);

/** @{ */
/** Record bytes and slots per chunk of an ipacl_mem_type (<ipacl/enums.h>);
 * 0 for an unknown type. */
IPACL_API uint32_t ipacl_sizeof_mem(uint32_t mem_type);
IPACL_API uint32_t ipacl_sizeof_mem_chunk(uint32_t mem_type);
/** @} */

/** @{ */
/** Displays on standard output. */
IPACL_API void ipacl_show_mm(const ipacl_mm *pool);
IPACL_API void ipacl_show_bm(const uint8_t *bitmap, uint32_t size, const char *label);
/** @} */
/** @{ */
/** A row of the memory-use table; `first` == 1 prints the header first. */
IPACL_API void ipacl_show_mem_use(uint32_t first, const ipacl_mem_use *use);
IPACL_API void ipacl_show_mem_total(uint32_t total);
/** @} */

/* ---- sync extension buffers --------------------------------------------- */

/** @{ */
/** Zero-filled buffers from the system allocator.  The operation buffers hold
 * a fixed part and n items (no overflow check on the size: keep n sensible);
 * the record buffers take the caller's size, at least that of the record.
 * *out is NULL when the allocation fails (IPACL_E_NO_MEM); a record size
 * below the minimum returns IPACL_E_BAD_ARG and leaves *out untouched. */
IPACL_API ipacl_rc ipacl_new_prof_sync_op_ext(uint32_t n, ipacl_prof_sync_op **out);
IPACL_API ipacl_rc ipacl_new_if_prof_sync_op_ext(uint32_t n, ipacl_if_prof_sync_op **out);
IPACL_API ipacl_rc ipacl_new_filter_sync_op_ext(uint32_t n, ipacl_filter_sync_op **out);
IPACL_API ipacl_rc ipacl_new_prof_sync_ext(uint32_t size, ipacl_prof_sync **out);
IPACL_API ipacl_rc ipacl_new_if_prof_sync_ext(uint32_t size, ipacl_if_prof_sync **out);
IPACL_API ipacl_rc ipacl_new_filter_sync_ext(uint32_t size, ipacl_filter_sync **out);
/** @} */

/** @{ */
/** Release a buffer of the matching ipacl_new_*_ext; NULL does nothing. */
IPACL_API void ipacl_free_prof_sync_op_ext(ipacl_prof_sync_op *buf);
IPACL_API void ipacl_free_if_prof_sync_op_ext(ipacl_if_prof_sync_op *buf);
IPACL_API void ipacl_free_filter_sync_op_ext(ipacl_filter_sync_op *buf);
IPACL_API void ipacl_free_prof_sync_ext(ipacl_prof_sync *buf);
IPACL_API void ipacl_free_if_prof_sync_ext(ipacl_if_prof_sync *buf);
IPACL_API void ipacl_free_filter_sync_ext(ipacl_filter_sync *buf);
/** @} */

/** @{ */
/** Key successors: step a key in place to the next one of a get-next walk: IPACL_OK, or
 * IPACL_E_FAIL (key unchanged) when it was the last.
 *
 * A name steps by value when it is all digits ("99" becomes "100"; the field
 * must have room for one more digit); otherwise its first character that can
 * be raised becomes the next printable character ("abc" becomes "bbc",
 * "~bc" becomes "~cc").  A binding steps from direction 1 to 2, then to the
 * next interface with direction 1; a filter steps its index, then its
 * profile name with index 0. */
IPACL_API ipacl_rc ipacl_next_prof(ipacl_prof_key *key);
IPACL_API ipacl_rc ipacl_next_if_prof(ipacl_if_prof_key *key);
IPACL_API ipacl_rc ipacl_next_filter(ipacl_filter_key *key);
/** @} */

IPACL_END_DECLS

#endif
