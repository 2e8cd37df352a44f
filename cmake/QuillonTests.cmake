if(QUILLON_TESTS)
  # GoogleTest comes from the distribution as source, so that both builds compile it their own way.
  find_path(QUILLON_GTEST_SOURCE googletest/include/gtest/gtest.h PATHS /usr/src/googletest
            NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(INSTALL_GTEST OFF)
  add_subdirectory(${QUILLON_GTEST_SOURCE} googletest EXCLUDE_FROM_ALL SYSTEM)
endif()

# quillon_tests(<program> <sources...>): one test program for a subsystem, run by ctest.
function(quillon_tests name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quillon_framework quillon_flags GTest::gmock_main)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

# quillon_soak_tests(<program> <sources...>): a test program that takes minutes; `./dev soak` runs it,
# `./dev test` does not.
function(quillon_soak_tests name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quillon_framework quillon_flags GTest::gmock_main)
  add_test(NAME ${name} CONFIGURATIONS Soak COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 3600 LABELS soak)
endfunction()

# quillon_fuzzer(<program> <sources...>): a libFuzzer program. ctest gives it a short run, the same every time,
# that starts from the inputs in fuzz/corpus/<program>, if there are any.
function(quillon_fuzzer name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quillon_framework quillon_flags)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/fuzzers)
  set(arguments -runs=20000 -seed=1 -max_len=4096)
  file(GLOB seeds ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}/*)
  if(seeds)
    list(JOIN seeds "," seeds)
    list(APPEND arguments -seed_inputs=${seeds})
  endif()
  add_test(NAME ${name} COMMAND ${name} ${arguments})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

# quillon_benchmark(<program> <sources...>): a program that `./dev bench` runs. It measures; ctest never runs it.
function(quillon_benchmark name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quillon_bench_support quillon_framework quillon_flags)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/benchmarks)
endfunction()
