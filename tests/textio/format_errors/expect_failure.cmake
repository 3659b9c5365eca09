# Compiles one SECTION of the statements. It must pass when that is `accepted`; else each of its lines must be
# refused in the words of the section's name, none for another reason, in at most MOST_LINES lines where given.
set(source ${CMAKE_CURRENT_LIST_DIR}/statements.cpp)
execute_process(
  COMMAND ${COMPILER} -std=c++20 -fsyntax-only -I${SOURCES} -D${SECTION} ${source}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)

if(SECTION STREQUAL "accepted")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "statements that are right do not compile:\n${output}")
  endif()
  return()
endif()

string(REPLACE "_" "[_ ]" words ${SECTION})
string(REGEX MATCHALL "format_error_[a-z_]+" reasons "${output}")
list(REMOVE_DUPLICATES reasons)
list(LENGTH reasons count)
if(status EQUAL 0 OR NOT output MATCHES "${words}" OR count GREATER 1)
  message(FATAL_ERROR "not refused, or not as ${SECTION} alone:\n${output}")
endif()

file(READ ${source} text)
string(REPLACE ";" "," text "${text}") # a list of lines
string(REPLACE "\n" ";" text "${text}")
set(line 0)
set(inside FALSE)
foreach(statement IN LISTS text)
  math(EXPR line "${line} + 1")
  if(statement MATCHES "^#")
    set(inside FALSE)
    if(statement MATCHES "defined\\(${SECTION}\\)")
      set(inside TRUE)
    endif()
  elseif(inside AND NOT statement STREQUAL "" AND NOT output MATCHES "statements.cpp:${line}:")
    message(FATAL_ERROR "line ${line} compiles: ${statement}\n${output}")
  endif()
endforeach()

string(REGEX MATCHALL "\n" lines "${output}")
list(LENGTH lines count)
if(MOST_LINES AND count GREATER MOST_LINES)
  message(FATAL_ERROR "${count} lines:\n${output}")
endif()
