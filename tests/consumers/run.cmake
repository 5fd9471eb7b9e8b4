# Configures, builds and runs a consumer against nothing but the installed tree.
#   cmake -DPREFIX=... -DWORK=... -DCONSUMER=<folder> -DGENERATOR=... -DC=... -DCXX=... -P run.cmake
cmake_minimum_required(VERSION 3.25)
get_filename_component(name ${CONSUMER} NAME)
set(build ${WORK}/${name}/build)
set(log_folder ${WORK}/${name}/log)
file(REMOVE_RECURSE ${WORK}/${name})
file(MAKE_DIRECTORY ${log_folder})

execute_process(COMMAND ${CMAKE_COMMAND} -S ${CONSUMER} -B ${build} -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_C_COMPILER=${C} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${PREFIX}
  COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} COMMAND_ERROR_IS_FATAL ANY)
foreach(program consumer_${name} consumer_${name}_windows)
  if(EXISTS ${build}/${program})
    execute_process(COMMAND ${build}/${program} ${log_folder} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
