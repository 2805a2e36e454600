# Every part the configuration asks for finds what it needs before anything
# is built; otherwise configure stops with one message that names, for each
# missing piece, the Debian package that provides it and the option that
# leaves the part out.
set(IPACL_MISSING "")
macro(ipacl_require found package option part)
  if(NOT ${found})
    string(APPEND IPACL_MISSING "\n  ${part}: install ${package}, or configure with -D${option}=OFF")
  endif()
endmacro()

if(IPACL_TOOLS)
  find_package(CLI11 CONFIG QUIET)
  ipacl_require(CLI11_FOUND libcli11-dev IPACL_TOOLS "the ipacl program needs CLI11")
endif()

if(IPACL_TESTS)
  if(CMAKE_CROSSCOMPILING)
    # The cross build compiles GoogleTest from the sources Debian ships.
    if(EXISTS /usr/src/googletest/CMakeLists.txt)
      set(IPACL_GTEST_SOURCES TRUE)
    endif()
    ipacl_require(IPACL_GTEST_SOURCES googletest IPACL_TESTS "the tests need the GoogleTest sources")
  else()
    find_package(GTest QUIET)
    ipacl_require(GTest_FOUND libgtest-dev IPACL_TESTS "the tests need GoogleTest")
    if(NOT IPACL_SANITIZE)
      # The install test builds its consumers through pkg-config too.
      find_program(IPACL_PKG_CONFIG pkg-config)
      ipacl_require(IPACL_PKG_CONFIG pkg-config IPACL_TESTS "the install test needs pkg-config")
    endif()
  endif()
endif()

if(IPACL_BENCH AND NOT CMAKE_CROSSCOMPILING)
  find_package(benchmark QUIET)
  ipacl_require(benchmark_FOUND libbenchmark-dev IPACL_BENCH "the benchmarks need Google Benchmark")
endif()

if(IPACL_MISSING)
  message(FATAL_ERROR "ipacl cannot be built as configured; missing Debian packages:${IPACL_MISSING}")
endif()
