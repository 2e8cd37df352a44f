# quillon_version_resource(<target> <description>): the product's version and names as a resource of a library or
# program, for the system to show.
function(quillon_version_resource target description)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(file_type VFT_APP)
    set(suffix .exe)
  else()
    set(file_type VFT_DLL)
    set(suffix .dll)
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/VersionInfo.rc.in ${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()
