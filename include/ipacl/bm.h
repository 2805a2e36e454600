/** @file
 * Bitmaps and prefix masks.
 *
 * A bitmap is a caller-owned byte array whose size is always given in bytes.
 * Bit b is the bit of value 1 << (b % 8) in byte b / 8, so the layout does not
 * depend on the host's byte order.
 *
 * The single-bit operations accept any bit with bit / 8 <= size: the first
 * byte past the end is still in range.  A caller whose array holds exactly
 * `size` bytes keeps its bits below size * 8 itself.
 *
 * A mask is `size` bytes in network order, most significant bit first.  The
 * normal form of a prefix of length len has its first len bits set; the
 * inverse (wildcard) form, chosen by a nonzero `inverse`, is its complement. */
#ifndef IPACL_BM_H
#define IPACL_BM_H

#include <ipacl/codes.h>
#include <ipacl/records.h>

IPACL_BEGIN_DECLS

/** Clears all `size` bytes. */
IPACL_API void ipacl_bm_init(uint8_t *bitmap, uint32_t size);

/** @{ */
/** Set or clear one bit.  Out of range: IPACL_E_BAD_ARG, "bit %u > size %u".
 * A bit that already has the wanted value returns IPACL_OK and leaves both
 * the bitmap and `err` untouched; a changed bit clears `err`. */
IPACL_API ipacl_rc ipacl_bm_set(uint8_t *bitmap, uint32_t size, uint32_t bit, char *err);
IPACL_API ipacl_rc ipacl_bm_clr(uint8_t *bitmap, uint32_t size, uint32_t bit, char *err);
/** @} */

/** @{ */
/** 1 or 0.  A bit out of range counts as clear: ipacl_bm_is_set answers 0 with
 * "bit %u > size %u", ipacl_bm_is_clr answers 1 with "ibt %u > size %u". */
IPACL_API uint32_t ipacl_bm_is_set(const uint8_t *bitmap, uint32_t size, uint32_t bit, char *err);
IPACL_API uint32_t ipacl_bm_is_clr(const uint8_t *bitmap, uint32_t size, uint32_t bit, char *err);
/** @} */

/** The lowest set bit at or after `start` into *bit.  IPACL_E_FAIL with
 * *bit = 0 when there is none. */
IPACL_API ipacl_rc ipacl_bm_next_set(const uint8_t *bitmap, uint32_t size, uint32_t start,
                                     uint32_t *bit);

/** Takes the lowest clear bit at or after `start`: sets it and stores it in
 * *bit.  IPACL_E_FAIL with *bit = 0 when every bit is set. */
IPACL_API ipacl_rc ipacl_bm_next_clr(uint8_t *bitmap, uint32_t size, uint32_t start, uint32_t *bit);

/** Number of set bits in the first `size` bytes. */
IPACL_API uint32_t ipacl_bm_count(const uint8_t *bitmap, uint32_t size);

/** 1 when the first `size` bytes are equal (always for size 0), else 0. */
IPACL_API uint32_t ipacl_bm_is_same(const uint8_t *a, const uint8_t *b, uint32_t size);

/** @{ */
/** Byte-wise combinations; `out` may be one of the inputs.  Always IPACL_OK.
 *   ipacl_bm_or:     out = a | b
 *   ipacl_bm_to_set: out = new & ~old  (bits to set to go from old to new)
 *   ipacl_bm_to_clr: out = old & ~new  (bits to clear to go from old to new) */
IPACL_API ipacl_rc ipacl_bm_or(const uint8_t *a, const uint8_t *b, uint32_t size, uint8_t *out);
IPACL_API ipacl_rc ipacl_bm_to_set(const uint8_t *old_bm, const uint8_t *new_bm, uint32_t size,
                                   uint8_t *out);
IPACL_API ipacl_rc ipacl_bm_to_clr(const uint8_t *old_bm, const uint8_t *new_bm, uint32_t size,
                                   uint8_t *out);
/** @} */

/** Prefix length of a mask of 1 to 16 bytes.  IPACL_E_FAIL when the size is
 * out of range (with *len = 0) or the mask is not one run of prefix bits; in
 * the latter case *len keeps the length counted up to the first gap. */
IPACL_API ipacl_rc ipacl_bm_mask_to_len(const uint8_t *mask, uint32_t size, uint32_t *len,
                                        uint32_t inverse);

/** Writes the mask of a prefix of length `len`.  IPACL_E_FAIL, nothing
 * written, when size is 0 or len > size * 8.  The byte holding the partial
 * bits is written even when len == size * 8, so `mask` must have one spare
 * byte behind its `size` bytes. */
IPACL_API ipacl_rc ipacl_bm_len_to_mask(uint8_t *mask, uint32_t size, uint32_t len,
                                        uint32_t inverse);

IPACL_END_DECLS

#endif
