# The terrain path profiler: target zelProfiler01::zelProfiler01. It needs nothing else to be found.
include(${CMAKE_CURRENT_LIST_DIR}/zelProfiler01Targets.cmake)

# The C++ headers want C++20; a host in C alone has no compiler that could be asked for it.
get_property(zelProfiler01_languages GLOBAL PROPERTY ENABLED_LANGUAGES)
if(NOT CXX IN_LIST zelProfiler01_languages)
  set_target_properties(zelProfiler01::zelProfiler01 PROPERTIES INTERFACE_COMPILE_FEATURES "")
endif()
