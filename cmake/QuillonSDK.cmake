# What other projects link, by the same names whether this one is installed or a folder of theirs:
#
#     Quillon::Framework      the framework and the hand-off classes, a copy of one's own
#     Quillon::FrameworkDll   the same out of the monitor's DLL
#     Quillon::Receiver       the C interface
if(NOT WIN32)
  # The native build is for tests.
  add_library(Quillon::Framework ALIAS quillon_framework)
  return()
endif()

quillon_static_library(quillon_sdk quillon_framework_objects quillon_handoff_objects)
set_target_properties(quillon_sdk PROPERTIES OUTPUT_NAME QuillonFramework)
target_link_libraries(quillon_sdk PUBLIC quillon_interface ${QUILLON_SYSTEM_LIBRARIES})
# What the objects call where a buffer on the stack has overflowed.
target_link_options(quillon_sdk INTERFACE -fstack-protector-strong)

set_target_properties(quillon_interface PROPERTIES EXPORT_NAME Interface)
set_target_properties(quillon_sdk PROPERTIES EXPORT_NAME Framework)
set_target_properties(QuillonPortMonitor64 PROPERTIES EXPORT_NAME FrameworkDll)
add_library(Quillon::Framework ALIAS quillon_sdk)
add_library(Quillon::FrameworkDll ALIAS QuillonPortMonitor64)
add_library(Quillon::Receiver ALIAS QuillonReceiver64)
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()

include(CMakePackageConfigHelpers)
set(package lib/cmake/Quillon)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuillonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(TARGETS quillon_interface quillon_sdk QuillonPortMonitor64 EXPORT QuillonTargets COMPONENT Sdk)
install(EXPORT QuillonTargets NAMESPACE Quillon:: DESTINATION ${package} COMPONENT Sdk)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/QuillonConfig.cmake ${PROJECT_BINARY_DIR}/QuillonConfigVersion.cmake
        DESTINATION ${package} COMPONENT Sdk)
# The package describes this one itself: other compilers have an import library of their own.
install(FILES $<TARGET_FILE:QuillonReceiver64> DESTINATION bin COMPONENT Sdk)
install(FILES ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/QuillonReceiver64.lib receiver/library/QuillonReceiver64.def
        DESTINATION lib COMPONENT Sdk)
install(FILES receiver/library/quillon_receiver.h DESTINATION include COMPONENT Sdk)
foreach(room framework platform/base platform/win32 monitor/handoff)
  cmake_path(GET room PARENT_PATH above)
  install(DIRECTORY ${room} DESTINATION include/quillon/${above} COMPONENT Sdk
          FILES_MATCHING PATTERN "*.h"
          # These are the monitor's side of it.
          PATTERN JobNotifier.h EXCLUDE PATTERN GPPJobNotification.h EXCLUDE PATTERN PWin32SpoolerApi.h EXCLUDE)
endforeach()
