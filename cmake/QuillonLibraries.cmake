# quillon_exported_objects(<name> <sources...>): objects that go whole into the DLL, which exports what is marked.
function(quillon_exported_objects name)
  add_library(${name} OBJECT ${ARGN})
  target_link_libraries(${name} PUBLIC quillon_flags)
  if(WIN32)
    target_compile_definitions(${name} PRIVATE
      "QUILLON_EXPORT=__declspec(dllexport)" "QUILLON_EXPORT_INLINE=__declspec(dllexport)")
  endif()
endfunction()

# quillon_static_library(<name> <objects...>): the same objects as a static library.
function(quillon_static_library name)
  list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
  add_library(${name} STATIC ${ARGN})
  if(WIN32)
    # Without this a program that links the library would export the framework, too.
    add_custom_command(TARGET ${name} POST_BUILD
      COMMAND ${CMAKE_OBJCOPY} --remove-section .drectve $<TARGET_FILE:${name}>)
  endif()
endfunction()
