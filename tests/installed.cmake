# Installs a build into a prefix of its own and builds and runs the example against it, away from
# the source tree. BUILD_DIR is the build, CXX the compiler.
cmake_minimum_required(VERSION 3.25)

set(place ${BUILD_DIR}/installed)
set(prefix ${place}/prefix)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
file(REMOVE_RECURSE ${place})
file(COPY ${root}/examples/hello-vok DESTINATION ${place})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(file bin/onlinecoach bin/practicematch bin/saydecode bin/formationview bin/start-coach
             share/vok/agent.conf share/man/man1/onlinecoach.1 include/VOK/worldmodel.h
             include/VOK/modules/tacticalmodule/tacticalmodule.h)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()

run(${CMAKE_COMMAND} -S ${place}/hello-vok -B ${place}/build -D CMAKE_PREFIX_PATH=${prefix}
    -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${place}/build)
run(${place}/build/hello-vok)
if(NOT output STREQUAL "cycle 12, ball at 3.5, -7\n")
  message(FATAL_ERROR "the example said: ${output}")
endif()

# The installed start script finds the installed coach and its configuration.
execute_process(COMMAND ${prefix}/bin/start-coach -p 1 -w 1 host.invalid ${prefix}
                ERROR_VARIABLE lines)
if(NOT lines MATCHES "server host unknown")
  message(FATAL_ERROR "start-coach said: ${lines}")
endif()
