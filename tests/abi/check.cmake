# Compares what the library exports with the checked-in list. A line that is missing breaks programs
# that are built already; a new one has to be meant.
# Given: LIBRARY, LIST, OUTPUT

execute_process(COMMAND nm --dynamic --defined-only --demangle ${LIBRARY}
    OUTPUT_VARIABLE symbols RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REPLACE ";" "," symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
# Functions and data. Weak symbols are inline code and depend on the build, but for the templates that
# are made for clients.
list(FILTER symbols INCLUDE REGEX "^[0-9a-f]+ ([TDBR] |W QString CK7String::)")
list(TRANSFORM symbols REPLACE "^[0-9a-f]+ [TDBRW] " "")
list(SORT symbols)
list(REMOVE_DUPLICATES symbols)
list(JOIN symbols "\n" symbols)
file(WRITE ${OUTPUT} "${symbols}\n")
execute_process(COMMAND diff -u ${LIST} ${OUTPUT} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "The exported symbols differ; the new list is ${OUTPUT}")
endif()
