# For user programs: find_package(VOK), targets VOK::VOK, VOK::modules, VOK::analysis and
# VOK::gamelogs. Only the last one needs zlib, so that players build without it.
find_package(ZLIB QUIET)
# By the real folder, since /lib may be a link to /usr/lib, and beside it are no headers.
get_filename_component(vok_dir ${CMAKE_CURRENT_LIST_DIR} REALPATH)
include(${vok_dir}/VOKTargets.cmake)
