# Builds the guide's examples against nothing but an installed tree, as the guide says.
#   cmake -DPREFIX=... -DWORK=... -DEXAMPLES=<folder> -DGENERATOR=... -DC=... -DCXX=... -P build_examples.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(GLOB_RECURSE pc_file ${PREFIX}/zelProfiler01.pc)
get_filename_component(pc_folder "${pc_file}" DIRECTORY)
set(ENV{PKG_CONFIG_PATH} ${pc_folder})
foreach(folder first_loss cpp qt c)
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${EXAMPLES}/${folder} -B ${WORK}/${folder} -G ${GENERATOR}
      -DCMAKE_C_COMPILER=${C} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${PREFIX}
      "-DCMAKE_C_FLAGS=-std=c11 -Wall -Wextra -Wpedantic -Werror" "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror"
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${WORK}/${folder} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
