# run(COMMAND...): runs one step of a script-mode test, stops the test with
# the step's output when it fails, and shows the output when it succeeds.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}")
  endif()
  message(STATUS "${out}")
endfunction()
