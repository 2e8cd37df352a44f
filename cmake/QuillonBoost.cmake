# Boost.Regex is header-only. The cross compiler is shown a folder that holds a link to Boost and
# nothing else: the host's whole include folder would shadow the Windows headers.
find_path(QUILLON_BOOST_PARENT boost/regex.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/boost-include)
file(CREATE_LINK ${QUILLON_BOOST_PARENT}/boost ${PROJECT_BINARY_DIR}/boost-include/boost SYMBOLIC)
add_library(quillon_boost INTERFACE)
target_include_directories(quillon_boost SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/boost-include)
