# Installs a build into a prefix of its own, builds the examples against it, away from the source
# tree, and lets the listener listen to the installed coach in matches. BUILD_DIR is the build, CXX the
# compiler.
cmake_minimum_required(VERSION 3.25)

set(place ${BUILD_DIR}/installed)
set(prefix ${place}/prefix)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
file(REMOVE_RECURSE ${place})
file(COPY ${root}/examples/player_listener ${root}/examples/team DESTINATION ${place})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(file bin/onlinecoach bin/practicematch bin/saydecode bin/formationview bin/confcheck
             bin/matchreport bin/seecheck bin/typecheck bin/start-coach bin/start-team libexec/vok/player
             share/vok/agent.conf share/man/man1/onlinecoach.1
             include/VOK/worldmodel.h include/VOK/tacticalmodule.h)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()

# Every header can be the first of a user's program, and brings no macro of a common name.
file(GLOB headers RELATIVE ${prefix}/include ${prefix}/include/VOK/*.h)
foreach(header ${headers})
  file(WRITE ${place}/user.cpp "#include <${header}>\n#ifdef ensure\n#error the macro ensure\n#endif\n")
  run(${CXX} -std=c++20 -Wall -Wextra -pedantic-errors -Werror -fsyntax-only -I${prefix}/include
      ${place}/user.cpp)
endforeach()

foreach(example player_listener team)
  run(${CMAKE_COMMAND} -S ${place}/${example} -B ${place}/build/${example}
      -D CMAKE_PREFIX_PATH=${prefix} -D CMAKE_CXX_COMPILER=${CXX} -D CMAKE_BUILD_TYPE=Release)
  run(${CMAKE_COMMAND} --build ${place}/build/${example})
endforeach()
run(${root}/tests/listener-match ${prefix} ${place}/build/player_listener/player_listener)

# The installed start script finds the installed coach and its configuration.
execute_process(COMMAND ${prefix}/bin/start-coach -p 1 -w 1 host.invalid ${prefix}
                ERROR_VARIABLE lines)
if(NOT lines MATCHES "server host unknown")
  message(FATAL_ERROR "start-coach said: ${lines}")
endif()
execute_process(COMMAND ${prefix}/bin/start-team -p 1 host.invalid ${prefix} 3
                ERROR_VARIABLE lines)
if(NOT lines MATCHES "server host unknown")
  message(FATAL_ERROR "start-team said: ${lines}")
endif()
