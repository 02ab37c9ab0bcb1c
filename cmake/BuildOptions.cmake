# What every target of ours is compiled with: warnings, sanitizers, coverage, and ccache where it is installed.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported()  # or programs would be linked as the compiler's makers saw fit

option(WARNINGS_AS_ERRORS "Stop at the first warning" OFF)
option(COVERAGE "Count which lines run" OFF)
set(SANITIZE "" CACHE STRING "Sanitizers, separated by commas")

find_program(CCACHE ccache)
if(CCACHE)
  # Paths count from the checkout, so that a second checkout finds what the first one compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
endif()

add_library(build_warnings INTERFACE)
target_compile_options(build_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${WARNINGS_AS_ERRORS}>:-Werror>)
add_library(build_options INTERFACE)
target_link_libraries(build_options INTERFACE build_warnings)
if(SANITIZE)
  target_compile_options(build_options INTERFACE -fsanitize=${SANITIZE} -fno-omit-frame-pointer)
  target_link_options(build_options INTERFACE -fsanitize=${SANITIZE})
endif()
# What makes an attacker's work harder; tools/check_hardening looks for it in what was built. The
# sanitizers see more than these, and want the plain functions that a fortified build replaces.
add_library(build_hardening INTERFACE)
if(NOT SANITIZE)
  target_compile_options(build_hardening INTERFACE
    -fstack-protector-strong -fstack-clash-protection -fno-plt
    $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection=full>)
  target_compile_definitions(build_hardening INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)  # without optimisation it does nothing but warn
  target_link_options(build_hardening INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
target_link_libraries(build_options INTERFACE build_hardening)
if(COVERAGE)
  target_compile_options(build_options INTERFACE --coverage)
  target_link_options(build_options INTERFACE --coverage)
endif()
