#include "base/debug_report.h"

#include <cstdio>
#include <cstring>

#include "platform/tivra.h"

namespace ipacl {
namespace {

constexpr uint32_t kHistEvent = 0x730000;
constexpr uint32_t kSubtype = 100;
constexpr size_t kReportSize = 512;

// The history record: the subtype, then the text with its NUL.
struct HistRecord {
    uint32_t subtype;
    char text[kReportSize];
} __attribute__((packed));

}  // namespace

void report_impossible(const char *format, int32_t value) {
    if (tivra_hist_event_subtype_check(kHistEvent, kSubtype) == 0) {
        HistRecord record;
        record.subtype = kSubtype;
        snprintf(record.text, sizeof record.text, format, value);
        uint32_t length = static_cast<uint32_t>(sizeof record.subtype + strlen(record.text) + 1);
        tivra_hist_event(kHistEvent, length, &record);
    }
    if (tivra_chk_int(kSubtype, 0, 0, 1) != 0) zlogf(1, tivra_dbg_modname, 0, format, value);
}

}  // namespace ipacl
