# Installs the build tree under a scratch prefix, then builds and runs the
# consumers against it (tests/install/consume.sh: pkg-config and the CMake
# package, shared and static).  Arguments: -DBUILD_DIR= -DSOURCE_DIR= -DWORK_DIR=
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

include(${SOURCE_DIR}/tests/scripts/run_step.cmake)

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(bash ${SOURCE_DIR}/tests/install/consume.sh ${prefix} ${WORK_DIR}/consumers)
