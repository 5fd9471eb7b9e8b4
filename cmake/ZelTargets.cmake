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
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Coverage for the fuzzers; the fuzzers themselves link the driver.
    add_compile_options(-fsanitize=fuzzer-no-link)
  endif()
endif()

# zel_precompiled(<target> <headers>): headers from outside that many of the target's files include, compiled once. With
# clang alone, which builds the sanitizers' tests: other builds see to it that each file includes what it needs.
function(zel_precompiled target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

# zel_unity(<target>): its files are compiled eight at a time, so that large headers are read and unfolded once for them.
function(zel_unity target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${ZEL_UNITY} UNITY_BUILD_BATCH_SIZE 8)
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
  target_link_libraries(${target} PRIVATE zel_options zel_test_support GTest::gtest_main)
  # What is tested is optimised. The tests themselves need not be, and compile in half to two thirds of the time.
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-O0>)
  if(ZEL_SANITIZE)
    # Addresses are watched in the tests, too; arithmetic and coverage in what is tested. Half the time again.
    target_compile_options(${target} PRIVATE -fno-sanitize=undefined
      $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=fuzzer-no-link>)
  endif()
endfunction()

# zel_test_precompiled(): the headers that nearly every test includes, compiled once (tests/support/precompiled.h).
# Another third of the tests' time; with clang alone, which takes them whatever macros a test has besides.
function(zel_test_precompiled)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    return()
  endif()
  add_executable(test_precompiled ${PROJECT_SOURCE_DIR}/tests/support/precompiled.cpp)
  zel_test_options(test_precompiled)
  # As tests with the toolkit are, so that one fits all.
  target_compile_options(test_precompiled PRIVATE -fPIC -Xclang -fno-pch-timestamp)
  target_precompile_headers(test_precompiled PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/precompiled.h)
endfunction()

# zel_test(<name> SOURCES <files> [DEPENDS <targets>] [PARTS <n>] [FIXTURE <header>]): one test program, each case known to
# ctest. With sanitizers the whole program is one test, or so many parts of it: starting it for each case would take longer
# than the cases. A fixture that all of the program's files include is precompiled where the headers of all tests are.
function(zel_test name)
  cmake_parse_arguments(ARG "" "PARTS;FIXTURE" "SOURCES;DEPENDS" ${ARGN})
  add_executable(test_${name} ${ARG_SOURCES})
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPENDS})
  zel_test_options(test_${name})
  if(TARGET test_precompiled)
    target_compile_options(test_${name} PRIVATE -fPIC -Xclang -fno-pch-timestamp)
    if(ARG_FIXTURE)
      target_precompile_headers(test_${name} PRIVATE
        ${PROJECT_SOURCE_DIR}/tests/support/precompiled.h ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_FIXTURE})
    else()
      target_precompile_headers(test_${name} REUSE_FROM test_precompiled)
    endif()
  endif()
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
