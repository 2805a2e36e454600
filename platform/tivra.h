/** @file
 * The tivra debug-history facility and the debug print. */
#ifndef IPACL_PLATFORM_TIVRA_H
#define IPACL_PLATFORM_TIVRA_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** 0 when events of this event and subtype are recorded in the history,
 * non-zero when they are not. */
int tivra_hist_event_subtype_check(uint32_t event, uint32_t subtype);
/** Records `length` bytes of `record` in the debug history under `event`. */
int tivra_hist_event(uint32_t event, uint32_t length, const void *record);
/** Non-zero when debug messages of the level in the last word are printed;
 * the other words are the caller's context. */
int tivra_chk_int(uint32_t subtype, uint32_t a, uint32_t b, uint32_t c);
/** Name of the module that debug messages are printed under. */
extern const char tivra_dbg_modname[];
/** Prints a debug or log message of syslog `level` for `module`, formatted
 * as printf does. */
void zlogf(int level, const char *module, int flags, const char *format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
