# Makes the Debian package of a build and holds it against what the build installs. BUILD_DIR is the
# build.
cmake_minimum_required(VERSION 3.25)

foreach(tool dpkg-deb dpkg-shlibdeps file)
  find_program(found_${tool} ${tool})
  if(NOT found_${tool})
    message("skipped: no ${tool}")
    return()
  endif()
endforeach()

set(place ${BUILD_DIR}/packaged)
file(REMOVE_RECURSE ${place})

function(run)
  execute_process(COMMAND ${ARGN} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${place}/installed/usr)
run(${CMAKE_CPACK_COMMAND} --config ${BUILD_DIR}/CPackConfig.cmake -B ${place})
file(GLOB package ${place}/vok_*.deb)
run(dpkg-deb -x ${package} ${place}/root)

file(GLOB_RECURSE installed RELATIVE ${place}/installed ${place}/installed/*)
file(GLOB_RECURSE packaged RELATIVE ${place}/root ${place}/root/*)
if(NOT "${packaged}" STREQUAL "${installed}")
  message(FATAL_ERROR "packaged: ${packaged}\ninstalled: ${installed}")
endif()

# Every program comes with its manual page.
file(GLOB programs RELATIVE ${place}/root/usr/bin ${place}/root/usr/bin/*)
foreach(program onlinecoach ${programs})
  if(NOT EXISTS ${place}/root/usr/share/man/man1/${program}.1)
    message(FATAL_ERROR "no manual page: ${program}")
  endif()
endforeach()

execute_process(COMMAND dpkg-deb -f ${package} Depends OUTPUT_VARIABLE needed)
if(NOT needed MATCHES "libc6.*libstdc\\+\\+6")
  message(FATAL_ERROR "it depends on: ${needed}")
endif()
