# Links the headers of libraries that are nothing but headers into ${HEADERS}: the cross compiler must not see
# this machine's other headers. Debian builds no libraries for mingw, so that there is no other kind:
#   CLI11     the command line: commands with their options, and their help
#   nlohmann  JSON, with comments, error positions, and any depth without recursion
#   rapidxml  XML; the only XML library in Debian without object code, and its elements know their position
#   boost     regular expressions, and the command line's arguments as UTF-8
#   utf8cpp   UTF-8
#   xxhash    hashes of files' contents
set(HEADERS ${PROJECT_BINARY_DIR}/generated/headers)
file(MAKE_DIRECTORY ${HEADERS})
foreach(package boost CLI nlohmann rapidxml utf8cpp)
  find_path(${package}_AT ${package} PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(CREATE_LINK ${${package}_AT}/${package} ${HEADERS}/${package} SYMBOLIC)
endforeach()
find_path(xxhash_AT xxhash.h PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(CREATE_LINK ${xxhash_AT}/xxhash.h ${HEADERS}/xxhash.h SYMBOLIC)
