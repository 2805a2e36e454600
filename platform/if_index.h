/** @file
 * The interface-index service: 0 on success, else the service's own code. */
#ifndef IPACL_PLATFORM_IF_INDEX_H
#define IPACL_PLATFORM_IF_INDEX_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Writes the type of the interface `if_index` into *type. */
int if_index_get_type(uint32_t if_index, uint8_t *type);
/** Splits a supervisor management interface into its fields: the
 * supervisor's slot into *first, the port on it into *second. */
int if_index_mgmt_sup_get_fields(uint32_t if_index, uint8_t *first, uint8_t *second);
/** Builds into *if_index the management interface of supervisor slot
 * `first`, port `port`. */
int if_index_mgmt_sup_port_init(uint32_t *if_index, uint32_t first, uint32_t port);
/** Writes the interface's name into at most `size` bytes of `buf` (terminated
 * when size > 0) and returns the name's full length, as snprintf does. */
int snprintf_if_index(char *buf, uint32_t size, uint32_t if_index);
/** Copies at most size-1 characters of src and terminates dst. */
char *__strcpy_to_buf(char *dst, const char *src, uint32_t size);

#ifdef __cplusplus
}
#endif

#endif
