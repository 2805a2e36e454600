// What a display prints: runs `fn` with standard output captured.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace ipacl_double {

template <typename Fn>
std::string output_of(Fn fn) {
    testing::internal::CaptureStdout();
    fn();
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

}  // namespace ipacl_double
