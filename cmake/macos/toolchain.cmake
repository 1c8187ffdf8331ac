# Builds for one processor of macOS on Linux; the cache variable CMAKE_SYSTEM_PROCESSOR says which.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 20.0)  # macOS 11.0
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSTEM_PROCESSOR)

set(CMAKE_CXX_COMPILER ${CMAKE_CURRENT_LIST_DIR}/compiler ${CMAKE_SYSTEM_PROCESSOR})
set(CMAKE_OBJCXX_COMPILER ${CMAKE_CXX_COMPILER})
# Without the usual `-x objective-c++`, which zig hands on in a form that clang warns of.
set(CMAKE_OBJCXX_COMPILE_OBJECT
    "<CMAKE_OBJCXX_COMPILER> <DEFINES> <INCLUDES> <FLAGS> -o <OBJECT> -c <SOURCE>")
set(CMAKE_AR llvm-ar-14)
set(CMAKE_RANLIB llvm-ranlib-14)
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-14)
