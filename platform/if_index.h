/* The interface-index service: 0 on success, else the service's own code. */
#ifndef IPACL_PLATFORM_IF_INDEX_H
#define IPACL_PLATFORM_IF_INDEX_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

int if_index_get_type(uint32_t if_index, uint8_t *type);
int if_index_mgmt_sup_get_fields(uint32_t if_index, uint8_t *first, uint8_t *second);
int if_index_mgmt_sup_port_init(uint32_t *if_index, uint32_t first, uint32_t port);
int snprintf_if_index(char *buf, uint32_t size, uint32_t if_index);
/* Copies at most size-1 characters of src and terminates dst. */
char *__strcpy_to_buf(char *dst, const char *src, uint32_t size);

#ifdef __cplusplus
}
#endif

#endif
