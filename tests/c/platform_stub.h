/* Further checks of the C consumer, kept apart so each library piece can add
 * its own. */
#ifndef IPACL_TEST_PLATFORM_STUB_H
#define IPACL_TEST_PLATFORM_STUB_H
int ipacl_c_consumer_checks(void);
#endif
