# Header-only libraries of the distribution. The cross compiler is shown a folder for each that holds a link to it
# and nothing else: the host's whole include folder would shadow the Windows headers.
function(quillon_header_library name folder header)
  find_path(QUILLON_${name}_PARENT ${folder}/${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(shown ${PROJECT_BINARY_DIR}/header-libraries/${name})
  file(MAKE_DIRECTORY ${shown})
  file(CREATE_LINK ${QUILLON_${name}_PARENT}/${folder} ${shown}/${folder} SYMBOLIC)
  add_library(quillon_${name} INTERFACE)
  target_include_directories(quillon_${name} SYSTEM INTERFACE ${shown})
endfunction()

quillon_header_library(boost boost regex.hpp)
if(WIN32)
  quillon_header_library(cli CLI CLI.hpp)
  quillon_header_library(json nlohmann json.hpp)
endif()
