# tarn_add_gtest(NAME SOURCES a.cpp b.cpp LIBS lib1 lib2 [LABELS l1 l2])
# Builds one GoogleTest executable and registers its cases with ctest.
function(tarn_add_gtest name)
  cmake_parse_arguments(T "" "" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} GTest::gtest GTest::gtest_main Threads::Threads)
  # Named after their program, so "ctest -R ^tarn_lice" picks one subsystem's tests.
  set(properties ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan-suppressions.txt")
  if(T_LABELS)  # an empty LABELS value would swallow the next property's name
    list(APPEND properties LABELS "${T_LABELS}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 TEST_PREFIX "${name}."
    PROPERTIES ${properties})
endfunction()

# tarn_add_bench(NAME SOURCES a.cpp LIBS lib1)
function(tarn_add_bench name)
  cmake_parse_arguments(B "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${B_SOURCES})
  target_link_libraries(${name} PRIVATE ${B_LIBS} benchmark::benchmark benchmark::benchmark_main)
endfunction()

# tarn_add_sanitizer_check(): in an address-sanitizer build, a test that the undefined-behaviour
# sanitizer does report a double-to-int conversion that overflows.
function(tarn_add_sanitizer_check)
  if(NOT TARN_SANITIZE STREQUAL "address")
    return()
  endif()
  add_executable(tarn_sanitizer_check ${PROJECT_SOURCE_DIR}/cmake/SanitizerCheck.cpp)
  add_test(NAME tarn_sanitizer_float_cast_overflow COMMAND tarn_sanitizer_check 1e30)
  set_tests_properties(tarn_sanitizer_float_cast_overflow PROPERTIES
    PASS_REGULAR_EXPRESSION "runtime error: .* is outside the range of representable values of type 'int'"
    # An exit, not an abort, after the report: ctest fails a test that dies of a signal.
    ENVIRONMENT "ASAN_OPTIONS=abort_on_error=0;UBSAN_OPTIONS=halt_on_error=1:abort_on_error=0"
    LABELS sanitizer)
endfunction()
