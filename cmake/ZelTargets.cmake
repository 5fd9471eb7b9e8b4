# Shared rules for every target: warnings, include root, sanitizers.

add_library(zel_options INTERFACE)
target_include_directories(zel_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_compile_options(zel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual> -Werror
  # GCC 12 sees overlapping copies in optimised assignments to std::string where there are none.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
# Strict Qt: no keywords, no implicit casts from or to ASCII.
target_compile_definitions(zel_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
if(ZEL_SANITIZE)
  add_compile_options(-fsanitize=${ZEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${ZEL_SANITIZE})
endif()

# zel_precompiled(<target> <headers>): headers from outside that many of the target's files include, compiled once. With
# clang alone, which builds the sanitizers' tests: other builds see to it that each file includes what it needs.
function(zel_precompiled target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# zel_unity(<target>): its files are compiled eight at a time, so that large headers are read and unfolded once for them. Names
# in anonymous namespaces then must differ within a folder. -DZEL_UNITY=OFF compiles each file by itself, as the debug preset
# and clang-tidy do: there it shows whether each includes what it needs.
function(zel_unity target)
  if(ZEL_UNITY)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
    # GCC takes the files put together for headers, in which members of a type of one file only would be a mistake.
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
  endif()
endfunction()

# zel_optimised_with_sanitizers(<target>): for what works through every post of a raster or pixel of a tile. It compiles no longer
# than the rest, and its tests run in half the time.
function(zel_optimised_with_sanitizers target)
  if(ZEL_SANITIZE)
    target_compile_options(${target} PRIVATE -O2)
  endif()
endfunction()

# zel_unoptimised_with_sanitizers(<target>): for what is mostly calls into the toolkit, or run once a command. Optimising it takes
# two thirds of its compile time and saves the suites little.
function(zel_unoptimised_with_sanitizers target)
  if(ZEL_SANITIZE)
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# zel_library(<name> SOURCES <files> [DEPENDS <targets>] [PRIVATE_DEPENDS <targets>] [PRECOMPILED <headers>])
# A static library of one folder, known to the others as zel::<name>.
function(zel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS;PRECOMPILED" ${ARGN})
  add_library(zel_${name} STATIC ${ARG_SOURCES})
  add_library(zel::${name} ALIAS zel_${name})
  target_link_libraries(zel_${name} PUBLIC ${ARG_DEPENDS} PRIVATE zel_options ${ARG_PRIVATE_DEPENDS})
  target_include_directories(zel_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
  # The public symbols are linked into the shared library; only it exports them.
  target_compile_definitions(zel_${name} PRIVATE ZEL_BUILDING)
  zel_unity(zel_${name})
  if(ARG_PRECOMPILED)
    zel_precompiled(zel_${name} ${ARG_PRECOMPILED})
  endif()
endfunction()

# zel_interface(<name> [DEPENDS <targets>]): a folder of headers.
function(zel_interface name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  add_library(zel_${name} INTERFACE)
  add_library(zel::${name} ALIAS zel_${name})
  target_link_libraries(zel_${name} INTERFACE ${ARG_DEPENDS})
  target_include_directories(zel_${name} INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
endfunction()

# What the tests are compiled with besides the sources' own options.
function(zel_test_options target)
  target_link_libraries(${target} PRIVATE zel_options zel_test_support)
  # What is tested is optimised. The tests themselves need not be, and compile in half to two thirds of the time.
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-O0>)
  if(ZEL_SANITIZE)
    # Addresses are watched in the tests, too; arithmetic and coverage in what is tested. Half the time again.
    target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
  endif()
endfunction()

# zel_test_precompiled(): the headers that nearly every test includes, compiled once (tests/support/precompiled.h).
# Another third of the tests' time; with clang alone, which takes them whatever macros a test has besides.
function(zel_test_precompiled)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    return()
  endif()
  add_executable(test_precompiled ${PROJECT_SOURCE_DIR}/tests/support/precompiled.cpp)
  target_link_libraries(test_precompiled PRIVATE GTest::gtest_main)
  zel_test_options(test_precompiled)
  # As tests with the toolkit are, so that one fits all.
  target_compile_options(test_precompiled PRIVATE -fPIC -Xclang -fno-pch-timestamp)
  target_precompile_headers(test_precompiled PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/precompiled.h)
endfunction()

# zel_test_program(<target> SOURCES <files> [DEPENDS <targets>] [FIXTURE <header>] [UNITY]): a program that tests run, compiled
# as tests are.
function(zel_test_program target)
  cmake_parse_arguments(ARG "UNITY" "FIXTURE" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_DEPENDS})
  zel_test_options(${target})
  if(ARG_UNITY)
    zel_unity(${target})
  endif()
  if(TARGET test_precompiled)
    target_compile_options(${target} PRIVATE -fPIC -Xclang -fno-pch-timestamp)
    if(ARG_FIXTURE)
      target_precompile_headers(${target} PRIVATE
        ${PROJECT_SOURCE_DIR}/tests/support/precompiled.h ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FIXTURE})
    else()
      target_precompile_headers(${target} REUSE_FROM test_precompiled)
    endif()
  endif()
endfunction()

# zel_test(<name> SOURCES <files> [DEPENDS <targets>] [PARTS <n>] [FIXTURE <header>] [UNITY]): one test program, each case known to
# ctest. With sanitizers the whole program is one test, or so many parts of it: starting it for each case would take longer
# than the cases. A fixture that all of the program's files include is precompiled where the headers of all tests are.
# UNITY: see zel_unity.
function(zel_test name)
  cmake_parse_arguments(ARG "" "PARTS" "" ${ARGN})
  zel_test_program(test_${name} ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(test_${name} PRIVATE GTest::gtest_main)
  if(ZEL_SANITIZE)
    if(NOT ARG_PARTS)
      set(ARG_PARTS 1)
    endif()
    foreach(part RANGE 1 ${ARG_PARTS})
      math(EXPR index "${part} - 1")
      add_test(NAME ${name}.part${part} COMMAND test_${name})
      set_tests_properties(${name}.part${part} PROPERTIES TIMEOUT 900
        ENVIRONMENT "${ZEL_TEST_ENVIRONMENT};GTEST_TOTAL_SHARDS=${ARG_PARTS};GTEST_SHARD_INDEX=${index}")
    endforeach()
    return()
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
  # A list cannot be handed through gtest_discover_tests, which would keep its first entry only.
  set(environment_file ${CMAKE_CURRENT_BINARY_DIR}/test_${name}_environment.cmake)
  file(WRITE ${environment_file} "if(test_${name}_TESTS)
  set_tests_properties(\${test_${name}_TESTS} PROPERTIES ENVIRONMENT \"${ZEL_TEST_ENVIRONMENT}\")
endif()
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${environment_file})
endfunction()
