# SPDX-License-Identifier: GPL-3.0-or-later
# Every folder under src/ is one library; its link line lists the folders it may see.

add_library(relay_options INTERFACE)
target_compile_options(relay_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # At -O3 this compiler warns of overflows in std::string's operator+ that do not exist.
  target_compile_options(relay_options INTERFACE
    $<$<CONFIG:Release>:-Wno-stringop-overflow;-Wno-restrict;-Wno-array-bounds>)
endif()
target_compile_definitions(relay_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
  RELAY_VERSION="${PROJECT_VERSION}")
target_include_directories(relay_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(RELAY_SANITIZE)
  target_compile_options(relay_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(relay_options INTERFACE -fsanitize=address,undefined)
endif()

find_program(RELAY_CCACHE ccache)
if(RELAY_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
    ${RELAY_CCACHE})
  # Lets ccache work with a precompiled header.
  target_compile_options(relay_options INTERFACE -fpch-preprocess)
endif()

# One precompiled header, built once and shared by every target.
file(WRITE ${PROJECT_BINARY_DIR}/pch.cpp.tmp "// Anchor of the precompiled header.\n")
configure_file(${PROJECT_BINARY_DIR}/pch.cpp.tmp ${PROJECT_BINARY_DIR}/pch.cpp COPYONLY)
add_library(relay_pch OBJECT ${PROJECT_BINARY_DIR}/pch.cpp)
set_target_properties(relay_pch PROPERTIES AUTOMOC OFF AUTOUIC OFF POSITION_INDEPENDENT_CODE ON)
target_link_libraries(relay_pch PRIVATE relay_options Qt6::Core)
target_precompile_headers(relay_pch PRIVATE
  <algorithm> <array> <chrono> <cstdint> <filesystem> <functional> <map> <memory> <optional>
  <string> <string_view> <unordered_map> <utility> <vector>
  <QAbstractTableModel> <QByteArray> <QCoreApplication> <QDateTime> <QHash> <QObject> <QString> <QTimer>)

function(relay_common target)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_precompile_headers(${target} REUSE_FROM relay_pch)
  # A build folder that knows the target without a new form does not see that its header is missing.
  get_target_property(sources ${target} SOURCES)
  set(known ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/sources)
  set(before "")
  if(EXISTS ${known})
    file(READ ${known} before)
  endif()
  if(NOT before STREQUAL "${sources}")
    file(WRITE ${known} "${sources}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp)
  endif()
endfunction()

# relay_library(name [LINKS target...] [WITH_FORMS] [EXCEPT file...]): the logic of src/<name>. Screens (frm*)
# are a library of their own, so that logic cannot see Widgets; use WITH_FORMS if the folder's forms have no window.
# The files of EXCEPT belong to another target.
function(relay_library name)
  cmake_parse_arguments(ARG "WITH_FORMS" "" "LINKS;EXCEPT" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
  if(NOT ARG_WITH_FORMS)
    list(FILTER sources EXCLUDE REGEX "/frm[^/]*$")
  endif()
  list(TRANSFORM ARG_EXCEPT PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${name}/)
  list(REMOVE_ITEM sources ${ARG_EXCEPT})
  add_library(relay_${name} STATIC ${sources} ${PROJECT_BINARY_DIR}/pch.cpp)
  target_link_libraries(relay_${name} PUBLIC relay_options ${ARG_LINKS})
  relay_common(relay_${name})
endfunction()

# relay_screens(name [LINKS target...] [ALSO file...]): the screens of src/<name>, and its other files that need
# Widgets.
function(relay_screens name)
  cmake_parse_arguments(ARG "" "" "LINKS;ALSO" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/frm*.cpp
    ${CMAKE_CURRENT_SOURCE_DIR}/${name}/frm*.h ${CMAKE_CURRENT_SOURCE_DIR}/${name}/frm*.ui)
  list(TRANSFORM ARG_ALSO PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${name}/)
  add_library(relay_${name}_screens STATIC ${sources} ${ARG_ALSO})
  target_link_libraries(relay_${name}_screens PUBLIC relay_${name} Qt6::Widgets ${ARG_LINKS})
  relay_common(relay_${name}_screens)
endfunction()

# relay_tests(name LINKS target...): every tests/<name>/*.cpp in one program, one ctest entry per case.
function(relay_tests name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources} support/main.cpp)
  target_link_libraries(test_${name} PRIVATE relay_test_support ${ARG_LINKS})
  target_compile_definitions(test_${name} PRIVATE
    TEST_FOLDER="${CMAKE_CURRENT_SOURCE_DIR}/${name}" RELAY_DATA_FOLDER="${PROJECT_SOURCE_DIR}/data")
  relay_common(test_${name})
  gtest_discover_tests(test_${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 180)
endfunction()
