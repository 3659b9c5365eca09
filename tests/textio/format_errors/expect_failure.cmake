# Compiles one STATEMENT. It must be refused in the words of EXPECTED, or pass when nothing is expected.
execute_process(
  COMMAND ${COMPILER} -std=c++20 -fsyntax-only -I${SOURCES} -DSTATEMENT=${STATEMENT}
          ${CMAKE_CURRENT_LIST_DIR}/statement.cpp
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)

if(EXPECTED STREQUAL "")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${STATEMENT} does not compile:\n${output}")
  endif()
elseif(status EQUAL 0)
  message(FATAL_ERROR "${STATEMENT} compiles")
elseif(NOT output MATCHES "[^a-z_]${EXPECTED}[^a-z_]")
  message(FATAL_ERROR "${STATEMENT} is refused, but not as ${EXPECTED}:\n${output}")
endif()
