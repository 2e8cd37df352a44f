# The installed package. Quillon::Receiver, the C interface, is for every compiler; the C++ targets are for the g++ of
# mingw-w64 whose libraries were used, as C++ of one compiler does not fit that of another.
get_filename_component(_quillon_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(NOT TARGET Quillon::Receiver)
  add_library(Quillon::Receiver SHARED IMPORTED)
  set_target_properties(Quillon::Receiver PROPERTIES
    IMPORTED_LOCATION "${_quillon_prefix}/bin/QuillonReceiver64.dll"
    IMPORTED_IMPLIB "${_quillon_prefix}/lib/QuillonReceiver64.lib"
    INTERFACE_INCLUDE_DIRECTORIES "${_quillon_prefix}/include")
endif()
unset(_quillon_prefix)
if(MINGW)
  include(${CMAKE_CURRENT_LIST_DIR}/QuillonTargets.cmake)
endif()
