// How the demo speaks: each process prints the steps it takes, tagged with
// its role, and flushes before it sends anything, so that the three
// processes' lines come out in the order in which things happen.
#pragma once

#include <cstdint>
#include <vector>

namespace ipacl_tool::demo {

enum class role { client, manager, standby };

// "  manager | check      ipacl_chk_quen_filter accepted it"
void say(role who, const char *step, const char *format, ...) __attribute__((format(printf, 3, 4)));
void heading(const char *format, ...) __attribute__((format(printf, 1, 2)));
// Bytes in hex under the step that shows them; `lines` limits the dump
// (0: all of it).
void show_hex(const std::vector<uint8_t> &bytes, std::size_t lines);
// Before the library's own display of a record (it prints unindented).
void before_display();
void flush();

}  // namespace ipacl_tool::demo
