# The terrain path profiler: target zelProfiler01::zelProfiler01. It needs nothing else to be found.
include(${CMAKE_CURRENT_LIST_DIR}/zelProfiler01Targets.cmake)
