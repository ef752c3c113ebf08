# One static library per folder, and the flags that all of our own code is built with.

option(ORMUND_WERROR "Treat warnings as errors" ON)
set(ORMUND_SANITIZE "" CACHE STRING "Sanitizers for the whole build, as -fsanitize= takes them")

add_library(ormund_flags INTERFACE)
target_include_directories(ormund_flags INTERFACE ${PROJECT_SOURCE_DIR})
# A truncation decides a step, so no compiler may fuse a multiply and an add.
target_compile_options(ormund_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -ffp-contract=off -fno-math-errno)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 19)
  # std::stable_sort of GCC 12's library calls what these compilers know as deprecated.
  target_compile_options(ormund_flags INTERFACE -Wno-deprecated-declarations)
endif()
if(ORMUND_WERROR)
  target_compile_options(ormund_flags INTERFACE -Werror)
endif()
if(ORMUND_SANITIZE)
  add_compile_options(-fsanitize=${ORMUND_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORMUND_SANITIZE})
  add_compile_definitions(ORMUND_CHECKED)
  foreach(checker ADDRESS REALTIME)
    string(TOLOWER ${checker} name)
    if(ORMUND_SANITIZE MATCHES ${name})
      add_compile_definitions(ORMUND_${checker}_CHECKED)
    endif()
  endforeach()
endif()

# A build that plays on other distributions too: what is not on every desktop is linked in.
option(ORMUND_PORTABLE "Link in what other distributions may lack" OFF)
if(ORMUND_PORTABLE)
  add_link_options(-static-libstdc++ -static-libgcc)
  set(CMAKE_INSTALL_RPATH $ORIGIN/../lib/ormund) # the programs' own sound library
endif()

# ormund_link_in(target libraries...): in a portable build the imported `target` takes the archives of
# these libraries instead of the shared objects, and with them what the shared objects bring.
function(ormund_link_in target)
  if(NOT ORMUND_PORTABLE)
    return()
  endif()
  get_target_property(linked ${target} INTERFACE_LINK_LIBRARIES)
  if(NOT linked)
    set(linked "")
  endif()
  foreach(library ${ARGN})
    find_library(ORMUND_ARCHIVE_${library} NAMES lib${library}.a REQUIRED)
    list(FILTER linked EXCLUDE REGEX "/lib${library}\\.so$")
    list(APPEND linked ${ORMUND_ARCHIVE_${library}})
  endforeach()
  set_target_properties(${target} PROPERTIES INTERFACE_LINK_LIBRARIES "${linked}")
endfunction()

# For a build from scratch: the standard headers are parsed once for all libraries and once for all
# tests, a folder's files are compiled a few at a time, and the tests themselves are not
# optimised. Off for everyday work, where a missing include would go unnoticed and a compiler cache
# would see less.
option(ORMUND_QUICK "Build from scratch in a third of the time" OFF)
# The same for the tests and for the programs that nobody installs; what they test and measure is
# compiled as ever, and counted as ever.
option(ORMUND_QUICK_TESTS "Build the tests from scratch in a third of the time" ${ORMUND_QUICK})
set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
set(ORMUND_STANDARD_HEADERS <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <cstdio>
  <cstring> <filesystem> <functional> <map> <memory> <optional> <random> <string> <string_view>
  <thread> <utility> <vector>)

if(ORMUND_QUICK)
  set(CMAKE_UNITY_BUILD ON)
  find_program(ORMUND_LLD ld.lld)
  if(ORMUND_LLD AND CMAKE_CXX_COMPILER_ID MATCHES Clang)
    add_link_options(-fuse-ld=lld)
  endif()
endif()
# Compiled alone even so: what another file of the folder gives a name to as well, other flags, and
# what sees the macros of Xlib.
set(ORMUND_ALONE synth/AudioLoopsBaseline.cpp engine/KWNotes.cpp engine/SequencerParameters.cpp controls/KWDisplay.cpp
  controls/KWLocalLink.cpp controls/KWListLineViewMenu.cpp controls/KWOptionMenuList.cpp controls/KWTableViewMouse.cpp
  skin/SkinImages.cpp editor/StillControls.cpp panel/ControlCatalogue.cpp
  apps/ormund/JackDriver.cpp tests/data/PatternStoreTest.cpp tests/presets/SceneTest.cpp
  tests/standalone/TimeTest.cpp tests/formats/Vst3Host.cpp tests/formats/GuestTest.cpp tests/formats/EditorTest.cpp
  tests/view/XServer.cpp tests/view/DropTarget.cpp tests/apps/StandaloneTest.cpp
  tests/host/WindowTest.cpp)

# ormund_apart(sources...): marks those of them that are compiled alone.
function(ormund_apart)
  foreach(source ${ARGN})
    file(RELATIVE_PATH name ${PROJECT_SOURCE_DIR} ${source})
    if(name IN_LIST ORMUND_ALONE)
      set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
endfunction()

# ormund_precompile(owner target headers...): `owner` keeps the parsed headers, the others take them
# from it, so all of them must be built with the same flags.
function(ormund_precompile owner target)
  if(target STREQUAL owner)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  else()
    target_precompile_headers(${target} REUSE_FROM ${owner})
  endif()
endfunction()

# ormund_together(targets...): of the tests, or of what nobody installs, compiled a few files at a time
# in a quick build.
function(ormund_together)
  if(ORMUND_QUICK_TESTS)
    set_target_properties(${ARGN} PROPERTIES UNITY_BUILD ON)
    # GCC takes what a unit includes for a header, where a type of the file's own may not stand.
    foreach(target ${ARGN})
      target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
    endforeach()
  endif()
endfunction()

# ormund_library(name [deps...]): all .cpp files of the current folder and of its rooms as library
# `ormund_name`. A room with a CMakeLists.txt is a library of its own.
# A folder with headers alone becomes an interface library.
function(ormund_library name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  file(GLOB rooms ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
  foreach(room ${rooms})
    get_filename_component(room ${room} DIRECTORY)
    list(FILTER sources EXCLUDE REGEX "^${room}/")
  endforeach()
  if(sources)
    ormund_apart(${sources})
    add_library(ormund_${name} STATIC ${sources})
    target_link_libraries(ormund_${name} PUBLIC ormund_flags ${ARGN})
    if(ORMUND_QUICK)
      ormund_precompile(ormund_platform ormund_${name} ${ORMUND_STANDARD_HEADERS})
    endif()
  else()
    add_library(ormund_${name} INTERFACE)
    target_link_libraries(ormund_${name} INTERFACE ormund_flags ${ARGN})
  endif()
endfunction()

# ormund_long_test(name): begun before all others, so that no core waits for it at the end.
function(ormund_long_test name)
  set_tests_properties(${name} PROPERTIES COST 1000 TIMEOUT 300)
endfunction()

# ormund_test(folder libs...): all tests/<folder>/*.cpp as one GoogleTest program.
function(ormund_test folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  string(REPLACE "/" "_" name ${folder})
  ormund_apart(${sources})
  add_executable(test_${name} ${sources})
  if(NOT folder STREQUAL sequencer) # which must do without
    target_sources(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/OwnHome.cpp)
  endif()
  target_link_libraries(test_${name} PRIVATE ormund_flags ${ARGN} GTest::gmock GTest::gtest_main)
  target_compile_definitions(test_${name} PRIVATE
    ORMUND_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORMUND_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  ormund_together(test_${name})
  if(ORMUND_QUICK_TESTS)
    ormund_precompile(
      test_base test_${name} <gmock/gmock.h> <gtest/gtest.h> ${ORMUND_STANDARD_HEADERS})
    target_compile_options(test_${name} PRIVATE -O0)
  endif()
  # To start a program under the checker of addresses, and to look for lost memory at its end, takes
  # longer than most tests: there each program runs once, in parts.
  if(ORMUND_SANITIZE MATCHES "address")
    list(LENGTH sources parts)
    math(EXPR parts "(${parts} + 1) / 2")
    foreach(part RANGE 1 ${parts})
      math(EXPR shard "${part} - 1")
      add_test(NAME ${folder}.part-${part}-of-${parts} COMMAND test_${name} --gtest_brief=1)
      set_tests_properties(${folder}.part-${part}-of-${parts} PROPERTIES TIMEOUT 300
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${shard}")
      if(folder MATCHES "host|presets") # long, and no part of them minds what runs beside
        ormund_long_test(${folder}.part-${part}-of-${parts})
      endif()
    endforeach()
    return()
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX ${folder}. DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300)
endfunction()
