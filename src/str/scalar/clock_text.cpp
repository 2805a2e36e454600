// Clock readings as text.  localtime and ctime hand back static results;
// they are copied at once.
#include <ipacl/str_scalar.h>

#include <sys/time.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "base/value_text.h"

extern "C" {

// A stopwatch reading for log lines: seconds of the minute, milliseconds,
// microseconds.
uint32_t ipacl_str_time(char *dst) {
    timeval now;
    gettimeofday(&now, nullptr);
    auto seconds = static_cast<unsigned>(now.tv_sec % 60);
    auto micros = static_cast<unsigned>(now.tv_usec);
    return static_cast<uint32_t>(
        snprintf(dst, ipacl::kTextSize, "%03u:%03u:%03u", seconds, micros / 1000, micros % 1000));
}

uint32_t ipacl_str_time_stamp(char *dst) {
    time_t now = time(nullptr);
    tm local{};
    if (const tm *shared = localtime(&now)) local = *shared;
    return static_cast<uint32_t>(
        snprintf(dst, ipacl::kTextSize, "%02u:%02u:%02u", static_cast<unsigned>(local.tm_hour),
                 static_cast<unsigned>(local.tm_min), static_cast<unsigned>(local.tm_sec)));
}

// A time that the calendar cannot show gives the empty text.
void ipacl_str_date(const time_t *t, char *dst) {
    const char *text = t ? ctime(t) : nullptr;
    snprintf(dst, ipacl::kTextSize, "%s", text ? text : "");
    size_t length = strlen(dst);
    if (length > 0 && dst[length - 1] == '\n') dst[length - 1] = '\0';
}

}  // extern "C"
