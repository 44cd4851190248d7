# Runs FUZZER once over every file of CORPUS (never a corpus folder, which libFuzzer would add to).
file(GLOB inputs LIST_DIRECTORIES false "${CORPUS}/*")
list(LENGTH inputs count)
if(count EQUAL 0)
  message(FATAL_ERROR "no inputs in ${CORPUS}")
endif()
execute_process(COMMAND ${FUZZER} -rss_limit_mb=2048 -timeout=10 ${inputs}
                RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${FUZZER} failed (${status}) over ${CORPUS}:\n${output}")
endif()
message(STATUS "${count} inputs of ${CORPUS} replayed")
