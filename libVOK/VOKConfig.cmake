# For player programs: find_package(VOK), targets VOK::VOK and VOK::modules.
# By the real folder, since /lib may be a link to /usr/lib, and beside it are no headers.
get_filename_component(vok_dir ${CMAKE_CURRENT_LIST_DIR} REALPATH)
include(${vok_dir}/VOKTargets.cmake)
