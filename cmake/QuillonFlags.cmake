# What whoever compiles our headers needs. It travels with the targets that others link.
add_library(quillon_interface INTERFACE)
if(WIN32)
  set(QUILLON_PLATFORM_FOLDER platform/win32)
else()
  set(QUILLON_PLATFORM_FOLDER platform/posix)
endif()
target_compile_features(quillon_interface INTERFACE cxx_std_20)
target_include_directories(quillon_interface INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/${QUILLON_PLATFORM_FOLDER}>
  $<INSTALL_INTERFACE:include/quillon> $<INSTALL_INTERFACE:include/quillon/${QUILLON_PLATFORM_FOLDER}>)

# Compiler and linker settings that every target of the project shares, and nobody else's.
cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${CMAKE_BINARY_DIR}
           OUTPUT_VARIABLE QUILLON_RELATIVE_SOURCE_DIR)
add_library(quillon_flags INTERFACE)
target_link_libraries(quillon_flags INTERFACE quillon_interface)
target_compile_options(quillon_flags INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wvla -Werror
  -fstack-protector-strong
  # No build path may reach a binary: the same sources give the same bytes anywhere. A compiler cache may have made the
  # path a relative one, seen from the build folder.
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${QUILLON_RELATIVE_SOURCE_DIR}=.)

if(WIN32)
  target_compile_definitions(quillon_flags INTERFACE
    _WIN32_WINNT=0x0601 WIN32_LEAN_AND_MEAN NOMINMAX __USE_MINGW_ANSI_STDIO=1)
  # A DLL in the spooler brings its run-time library along: -static leaves system DLLs only.
  target_link_options(quillon_flags INTERFACE
    -static -fstack-protector-strong -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat -Wl,--no-insert-timestamp)
  set(QUILLON_SYSTEM_LIBRARIES
    bcrypt winspool wtsapi32 advapi32 shell32 secur32 psapi iphlpapi dbghelp ole32 uuid version ntdll)
else()
  if(QUILLON_SANITIZE)
    target_compile_options(quillon_flags INTERFACE
      -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quillon_flags INTERFACE -fsanitize=address,undefined)
  endif()
  if(QUILLON_FUZZ)
    target_compile_options(quillon_flags INTERFACE -fsanitize=fuzzer-no-link)
  endif()
endif()
