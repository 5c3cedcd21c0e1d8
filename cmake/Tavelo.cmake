# SPDX-FileCopyrightText: the Tavelo authors
# SPDX-License-Identifier: MIT
#
# How every target of ours is built: the language, the warnings, the sanitizers.

cmake_path(SET TAVELO_ROOT NORMALIZE "${CMAKE_CURRENT_LIST_DIR}/..")

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# The media engine is a plugin: it uses the interface that the program exports, and lies at the same
# place beside the program in the build folder as where it is installed.
set(CMAKE_ENABLE_EXPORTS ON)
set(TAVELO_PLUGIN_DIR ${CMAKE_INSTALL_LIBDIR}/tavelo/plugins)
file(RELATIVE_PATH TAVELO_PLUGIN_PATH
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/tavelo/plugins)
cmake_path(ABSOLUTE_PATH TAVELO_PLUGIN_PATH BASE_DIRECTORY ${CMAKE_BINARY_DIR}/bin NORMALIZE
  OUTPUT_VARIABLE TAVELO_PLUGIN_OUTPUT_DIRECTORY)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

set(TAVELO_WARNINGS -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Wconversion -Werror)
set(TAVELO_DEFINITIONS QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_KEYWORDS
    QT_STRICT_ITERATORS)

if(TAVELO_SANITIZE)
  add_compile_options(-fsanitize=${TAVELO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TAVELO_SANITIZE})
endif()

# The rules of the house for one target, whatever its kind.
function(tavelo_target target)
  tavelo_test_target(${target})
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
endfunction()

# The same for tests, which may write texts plainly.
function(tavelo_test_target target)
  target_compile_options(${target} PRIVATE ${TAVELO_WARNINGS})
  target_compile_definitions(${target} PRIVATE ${TAVELO_DEFINITIONS})
  target_include_directories(${target} PUBLIC ${TAVELO_ROOT}/src)
endfunction()

# A static library: tavelo_library(name SOURCES a.cpp … LINK Qt6::Core …)
function(tavelo_library target)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_link_libraries(${target} PUBLIC ${ARG_LINK})
  tavelo_target(${target})
endfunction()

# A Qt Test program, run by CTest: tavelo_test(tst_name SOURCES … LINK …)
function(tavelo_test target)
  cmake_parse_arguments(ARG "WINDOW" "" "SOURCES;LINK" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE Qt6::Test ${ARG_LINK})
  target_include_directories(${target} PRIVATE ${TAVELO_ROOT}/tests)
  tavelo_test_target(${target})
  add_test(NAME ${target} COMMAND ${target})
  set(environment LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen)
  if(ARG_WINDOW)
    # Graphics drivers keep a little memory and are unloaded with it, which no suppression can name.
    set(environment LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb ASAN_OPTIONS=detect_leaks=0)
  endif()
  set_tests_properties(${target} PROPERTIES TIMEOUT 180 ENVIRONMENT "${environment}")
  if(ARG_WINDOW)
    # Only one window of a display has the keyboard.
    set_tests_properties(${target} PROPERTIES RESOURCE_LOCK display)
  endif()
endfunction()
