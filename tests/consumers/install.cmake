# Installs the build to a prefix, and moves that to PREFIX: nothing in the tree may know where it was put first.
#   cmake -DBUILD=... -DWORK=... -DPREFIX=... -P install.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${WORK}/first ${PREFIX})
