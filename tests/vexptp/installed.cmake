# Installs the program alone into an empty folder and runs it there.
#   cmake -DINSTALL=<cmake_install.cmake> -DWORK=<folder> -DBIN=<folder of programs> -DVERSION=<version> -P installed.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} -DCMAKE_INSTALL_PREFIX=${WORK} -P ${INSTALL}
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${WORK}/${BIN}/vexptp.exe --version OUTPUT_VARIABLE said COMMAND_ERROR_IS_FATAL ANY)
if(NOT said STREQUAL "vexptp.exe ${VERSION}\n")
  message(FATAL_ERROR "the installed program said: ${said}")
endif()
