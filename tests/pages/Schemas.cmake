# vl_hold_to_schema(relaxng|schematron <schema of definitions/> <file>)
# Adds what is wrong to schema_problems of the caller.

function(vl_hold_to_schema kind schema file)
  execute_process(COMMAND xmllint --noout --${kind} "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../../definitions/${schema}" "${file}"
    OUTPUT_VARIABLE told ERROR_VARIABLE told RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    string(APPEND schema_problems "${file} does not hold to ${schema}: ${told}\n")
  endif()
  set(schema_problems "${schema_problems}" PARENT_SCOPE)
endfunction()
