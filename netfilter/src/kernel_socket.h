// The x_tables socket options of one family: table info, entries, replace,
// add counters.  Each failure becomes the library's code and message.
#pragma once

#include "byte_buffer.h"
#include "kernel_family.h"

#include <cstdint>

namespace ipacl_nf {

class xt_socket {
  public:
    explicit xt_socket(const family_layout &layout) : layout_(layout) {}
    xt_socket(const xt_socket &) = delete;
    xt_socket &operator=(const xt_socket &) = delete;
    ~xt_socket();

    uint32_t open(char *err);
    // `info` is an ipt_getinfo; `request` an ipt_get_entries of the size
    // the info gave, filled by the kernel.
    uint32_t get_info(void *info, uint32_t size, char *err);
    uint32_t get_entries(void *request, uint32_t size, char *err);
    // `request` an ipt_replace followed by its entries.
    uint32_t replace(void *request, uint32_t size, char *err);
    // `request` an xt_counters_info followed by its counters.
    uint32_t add_counters(void *request, uint32_t size, char *err);

    const family_layout &layout() const { return layout_; }
    // errno of the last refused request.
    int last_error() const { return last_error_; }

  private:
    uint32_t refused(const char *operation, int error, char *err);
    // UNAVAILABLE where the module or table is missing, else as refused().
    uint32_t unavailable_or_refused(const char *operation, int error, char *err);

    const family_layout &layout_;
    int fd_ = -1;
    int last_error_ = 0;
};

}  // namespace ipacl_nf
