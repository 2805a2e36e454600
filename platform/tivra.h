/* The tivra debug-history facility and the debug print. */
#ifndef IPACL_PLATFORM_TIVRA_H
#define IPACL_PLATFORM_TIVRA_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

int tivra_hist_event_subtype_check(uint32_t event, uint32_t subtype);
int tivra_hist_event(uint32_t event, uint32_t length, const void *record);
int tivra_chk_int(uint32_t subtype, uint32_t a, uint32_t b, uint32_t c);
extern const char tivra_dbg_modname[];
void zlogf(int level, const char *module, int flags, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
