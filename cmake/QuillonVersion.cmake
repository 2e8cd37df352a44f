# The product as the system's lists and dialogs name it. Its version stands in the CMakeLists.txt at the top.
set(QUILLON_PRODUCT_NAME "Quillon Port Monitor")
set(QUILLON_MAKER "Quillon")

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

# The same for the packages (package/package.py).
configure_file(${PROJECT_SOURCE_DIR}/package/product.json.in ${PROJECT_BINARY_DIR}/product.json @ONLY)
