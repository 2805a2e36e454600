// The iptables chain and target names: the library's only global state.
// They are zero-filled at load and filled in by the user.
#include <ipacl/records.h>

extern "C" {
char ipacl_chain_in[IPACL_CHAIN_NAME_SIZE];
char ipacl_chain_out[IPACL_CHAIN_NAME_SIZE];
char ipacl_chain_fwd[IPACL_CHAIN_NAME_SIZE];
char ipacl_target_accept[IPACL_TARGET_NAME_SIZE];
char ipacl_target_drop[IPACL_TARGET_NAME_SIZE];
char ipacl_target_queue[IPACL_TARGET_NAME_SIZE];
char ipacl_target_return[IPACL_TARGET_NAME_SIZE];
}
