# GoogleTest comes from the distribution as source, so that both builds compile it their own way.
find_path(QUILLON_GTEST_SOURCE googletest/include/gtest/gtest.h PATHS /usr/src/googletest
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(INSTALL_GTEST OFF)
add_subdirectory(${QUILLON_GTEST_SOURCE} googletest EXCLUDE_FROM_ALL SYSTEM)

# quillon_tests(<program> <sources...>): one test program for a subsystem, run by ctest.
function(quillon_tests name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE quillon_framework quillon_flags GTest::gmock_main)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
