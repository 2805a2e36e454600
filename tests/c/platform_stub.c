/* Minimal platform for the C consumer: every service answers "nothing". */
#include <errno.h>
#include <stdint.h>
#include <string.h>

#include "platform/if_index.h"
#include "platform/tivra.h"
#include "platform/vel.h"
#include "platform_stub.h"

int vel_send(uint32_t h, uint32_t n, uint32_t s, uint32_t o, const void *p, uint32_t z, void *r,
             uint32_t t, uint32_t f) {
    (void)h, (void)n, (void)s, (void)o, (void)p, (void)z, (void)r, (void)t, (void)f;
    errno = ENOSYS;
    return -1;
}
uint32_t vel_rr_token_get(void *r) {
    (void)r;
    return 0;
}
int vel_drop(uint32_t h, void *m) {
    (void)h, (void)m;
    return 0;
}
int vel_recv(uint32_t h, void *m, void *o) {
    (void)h, (void)m, (void)o;
    errno = ENOSYS;
    return -1;
}
void *vel_payload_get(void *m) {
    (void)m;
    return 0;
}
uint32_t vel_payload_size(void *m) {
    (void)m;
    return 0;
}
int if_index_get_type(uint32_t i, uint8_t *t) {
    (void)i;
    *t = 2;
    return 0;
}
int if_index_mgmt_sup_get_fields(uint32_t i, uint8_t *a, uint8_t *b) {
    (void)i;
    *a = 0;
    *b = 0;
    return 0;
}
int if_index_mgmt_sup_port_init(uint32_t *i, uint32_t a, uint32_t p) {
    (void)a, (void)p;
    *i = 0;
    return 0;
}
int snprintf_if_index(char *b, uint32_t s, uint32_t i) {
    (void)i;
    if (s) b[0] = 0;
    return 0;
}
char *__strcpy_to_buf(char *d, const char *s, uint32_t n) {
    size_t len = strlen(s);
    if (n == 0) return d;
    if (len > n - 1) len = n - 1;
    memcpy(d, s, len);
    d[len] = 0;
    return d;
}
int tivra_hist_event_subtype_check(uint32_t e, uint32_t s) {
    (void)e, (void)s;
    return 1;
}
int tivra_hist_event(uint32_t e, uint32_t l, const void *r) {
    (void)e, (void)l, (void)r;
    return 0;
}
int tivra_chk_int(uint32_t s, uint32_t a, uint32_t b, uint32_t c) {
    (void)s, (void)a, (void)b, (void)c;
    return 0;
}
const char tivra_dbg_modname[] = "c-consumer";
void zlogf(int level, const char *module, int flags, const char *format, ...) {
    (void)level, (void)module, (void)flags, (void)format;
}

int ipacl_c_consumer_checks(void) { return 0; }
