# Functions that make this project's targets: one library per folder of src/, one test program per folder of tests/.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

find_package(Threads REQUIRED)
find_package(Boost 1.81 REQUIRED COMPONENTS json system)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(fmt REQUIRED)
find_package(spdlog REQUIRED)
find_package(PkgConfig REQUIRED)

add_compile_options(-Wall -Wextra -Wpedantic -Werror -fno-omit-frame-pointer)
# Paths in messages and debug information are relative to the checkout, so that builds are alike wherever it lies.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-Wthread-safety) # locks as src/platform/Mutex.h annotates them
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ 12 warns of moved-from strings and optionals that it has misread (GCC bugs 105329, 105562, 107852).
  # And of coroutine frames, whose operators new and delete belong together though one of them was inlined.
  add_compile_options(-Wno-mismatched-new-delete)
  if(CMAKE_UNITY_BUILD)
    # It warns of types of an unnamed namespace that leave their file, by which it means any but the main one.
    add_compile_options(-Wno-subobject-linkage)
  endif()
  add_compile_options(-Wno-restrict -Wno-maybe-uninitialized -Wno-stringop-overflow -Wno-array-bounds -Wno-dangling-pointer)
endif()
# The shipped program too checks its indices and its empty optionals.
add_compile_definitions(_GLIBCXX_ASSERTIONS)
add_compile_definitions(BOOST_ASIO_NO_DEPRECATED BOOST_ASIO_SEPARATE_COMPILATION BOOST_BEAST_SEPARATE_COMPILATION)
if(TABWRIGHT_SANITIZE)
  # Without the check of dynamic types: sanitized programs export their inline functions, and libraries loaded at run
  # time (JavaScriptCore) then call those with objects that have no type information.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all -g1)
  add_link_options(-fsanitize=address,undefined)
endif()
if(TABWRIGHT_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread -g1)
  add_link_options(-fsanitize=thread)
endif()
if(TABWRIGHT_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  find_program(LLD_PROGRAM ld.lld-19)
  if(LLD_PROGRAM)
    add_link_options(--ld-path=${LLD_PROGRAM})
  endif()
endif()

# All that is generated, for tools that read the sources without a build.
add_custom_target(generated)

# Precompiled headers. TARGET gives its headers to those that reuse it. A precompiled header holds the paths of its
# checkout, so the compilers' cache takes it from nowhere else, and knows it by what it was made from instead of its bytes:
# then what is compiled in one checkout serves the others.
function(tabwright_precompiled_headers target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  set_target_properties(${target} PROPERTIES CXX_COMPILER_LAUNCHER "")
  set(system "")
  if(EXISTS /var/lib/dpkg/status)
    file(SHA256 /var/lib/dpkg/status system)
  endif()
  get_directory_property(options COMPILE_OPTIONS)
  list(FILTER options EXCLUDE REGEX "-prefix-map=")
  get_target_property(own ${target} COMPILE_OPTIONS)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  string(SHA256 sum "${CMAKE_CXX_COMPILER_VERSION};${CMAKE_CXX_FLAGS};${CMAKE_CXX_FLAGS_${type}};${options};${own};${ARGN};${system}")
  foreach(suffix IN ITEMS pch gch)
    file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.${suffix}.sum" "${sum}\n")
  endforeach()
endfunction()

if(TABWRIGHT_PRECOMPILE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp") # ccache compares contents
  endif()
  add_library(tabwright_precompiled STATIC "${CMAKE_SOURCE_DIR}/cmake/precompiled/Common.cpp")
  target_link_libraries(tabwright_precompiled PUBLIC Boost::json Boost::system spdlog::spdlog fmt::fmt ICU::uc ICU::i18n)
  tabwright_precompiled_headers(tabwright_precompiled
    <algorithm> <array> <charconv> <chrono> <cmath> <cstdint> <filesystem> <fstream> <functional> <map> <memory> <mutex>
    <optional> <set> <span> <sstream> <stdexcept> <stop_token> <string> <string_view> <thread> <unordered_map> <utility>
    <variant> <vector> <boost/asio/awaitable.hpp> <boost/asio/io_context.hpp> <boost/json.hpp> <fmt/core.h>
    <fmt/format.h>)
endif()

function(tabwright_precompile target precompiled)
  if(TABWRIGHT_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${precompiled})
    target_compile_options(${target} PRIVATE $<TARGET_PROPERTY:${precompiled},INTERFACE_COMPILE_OPTIONS>)
  endif()
endfunction()

# In a unity build the sources of one folder are compiled together, a batch at a time: names in unnamed namespaces are
# their folder's, and folders that are alike on purpose (two browsers' dictionaries) may name things alike.
function(tabwright_unity target)
  if(NOT CMAKE_UNITY_BUILD)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  foreach(source IN LISTS ARGN)
    cmake_path(RELATIVE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" OUTPUT_VARIABLE path)
    cmake_path(GET path PARENT_PATH folder)
    string(MAKE_C_IDENTIFIER "own_${folder}" folder)
    if(CMAKE_UNITY_BUILD_BATCH_SIZE)
      math(EXPR batch "${count_${folder}}+0")
      math(EXPR count_${folder} "${batch}+1")
      math(EXPR batch "${batch}/${CMAKE_UNITY_BUILD_BATCH_SIZE}")
      string(APPEND folder "_${batch}")
    endif()
    set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${folder}")
  endforeach()
endfunction()

# tabwright_library(NAME [WITHOUT_PRECOMPILED] DEPENDS folder... LIBRARIES target...)
# The library of src/NAME: every source below the folder, linked to the named folders and nothing else of ours.
function(tabwright_library name)
  cmake_parse_arguments(arg "WITHOUT_PRECOMPILED" "" "DEPENDS;LIBRARIES;EXCLUDE" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(arg_EXCLUDE)
    list(FILTER sources EXCLUDE REGEX "${arg_EXCLUDE}")
  endif()
  if(sources)
    add_library(tabwright_${name} STATIC ${sources})
    tabwright_unity(tabwright_${name} ${sources})
    if(NOT arg_WITHOUT_PRECOMPILED)
      tabwright_precompile(tabwright_${name} tabwright_precompiled)
    endif()
    set(scope PUBLIC)
  else()
    add_library(tabwright_${name} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(tabwright_${name} ${scope} "${CMAKE_SOURCE_DIR}/src")
  list(TRANSFORM arg_DEPENDS PREPEND tabwright_)
  target_link_libraries(tabwright_${name} ${scope} ${arg_DEPENDS} ${arg_LIBRARIES} Threads::Threads)
endfunction()

# tabwright_link_statically(TARGET)
# For a program that must be there at once: loading libraries is the half of a warm start.
include(CheckLinkerFlag)
function(tabwright_link_statically target)
  if(TABWRIGHT_SANITIZE OR TABWRIGHT_SANITIZE_THREADS)
    return()
  endif()
  check_linker_flag(CXX "-static" TABWRIGHT_LINKS_STATICALLY)
  if(TABWRIGHT_LINKS_STATICALLY)
    target_link_options(${target} PRIVATE -static -Wl,--gc-sections)
  else()
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc -Wl,--as-needed -Wl,--gc-sections)
  endif()
endfunction()

# tabwright_resources(TARGET NAMESPACE file...)
# Embeds resource files: each becomes `inline constexpr std::string_view` in the generated header
# "<TARGET>Resources.h", named after the file (letters and digits, other characters as underscores).
function(tabwright_resources target namespace)
  set(header "${CMAKE_CURRENT_BINARY_DIR}/generated/${target}Resources.h")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN} "${CMAKE_SOURCE_DIR}/cmake/EmbedResources.cmake")
  add_custom_command(
    OUTPUT "${header}"
    COMMAND "${CMAKE_COMMAND}" "-DHEADER=${header}" "-DNAMESPACE=${namespace}" "-DFILES=${ARGN}" -P
            "${CMAKE_SOURCE_DIR}/cmake/EmbedResources.cmake"
    DEPENDS ${ARGN} "${CMAKE_SOURCE_DIR}/cmake/EmbedResources.cmake"
    COMMENT "Embedding the resources of ${target}"
    VERBATIM)
  target_sources(${target} PRIVATE "${header}")
  add_custom_target(${target}_resources DEPENDS "${header}")
  add_dependencies(generated ${target}_resources)
  target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/generated")
endfunction()

# tabwright_tests(NAME DEPENDS folder...)
# The test program of tests/NAME.
if(TABWRIGHT_PRECOMPILE AND TABWRIGHT_TESTS)
  find_package(GTest REQUIRED)
  add_library(tabwright_tests_precompiled STATIC "${CMAKE_SOURCE_DIR}/cmake/precompiled/Common.cpp")
  target_link_libraries(tabwright_tests_precompiled PUBLIC tabwright_precompiled GTest::gtest GTest::gmock Threads::Threads)
  target_compile_options(tabwright_tests_precompiled PUBLIC -O0) # matchers take longer to optimise than to run
  tabwright_precompiled_headers(tabwright_tests_precompiled
    <chrono> <filesystem> <fstream> <functional> <map> <memory> <optional> <string> <thread> <vector>
    <boost/asio/awaitable.hpp> <boost/asio/io_context.hpp> <boost/asio/co_spawn.hpp> <boost/json.hpp> <fmt/format.h>
    <gtest/gtest.h> <gmock/gmock.h>)
endif()

function(tabwright_tests name)
  cmake_parse_arguments(arg "" "" "DEPENDS;LIBRARIES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(NOT sources)
    return()
  endif()
  add_executable(tabwright_${name}_tests ${sources})
  tabwright_precompile(tabwright_${name}_tests tabwright_tests_precompiled)
  list(TRANSFORM arg_DEPENDS PREPEND tabwright_)
  target_link_libraries(tabwright_${name}_tests PRIVATE ${arg_DEPENDS} ${arg_LIBRARIES} tabwright_source_folder GTest::gtest_main GTest::gmock)
  target_include_directories(tabwright_${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  gtest_discover_tests(tabwright_${name}_tests DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}/" PROPERTIES TIMEOUT 120)
endfunction()
