# Installs the build tree under a scratch prefix, then builds and runs the
# netfilter consumer against it, through the CMake package and through
# pkg-config.  Arguments: -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR=
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

include(${SOURCE_DIR}/tests/scripts/run_step.cmake)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
file(GLOB_RECURSE pc ${prefix}/*/ipacl-netfilter.pc)
get_filename_component(pcdir "${pc}" DIRECTORY)
file(GLOB libdirs LIST_DIRECTORIES true ${prefix}/lib ${prefix}/lib/*)
string(REPLACE ";" ":" libpath "${libdirs}")

foreach(mode config pkgconfig)
  set(dir ${WORK_DIR}/${mode})
  if(mode STREQUAL "pkgconfig")
    set(ENV{PKG_CONFIG_PATH} ${pcdir})
    set(extra -DUSE_PKG_CONFIG=ON)
  else()
    set(extra -DCMAKE_PREFIX_PATH=${prefix})
  endif()
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/netfilter/tests/install_consumer -B ${dir} ${extra})
  run(${CMAKE_COMMAND} --build ${dir})
  set(ENV{LD_LIBRARY_PATH} ${libpath})
  run(${dir}/consumer)
endforeach()
