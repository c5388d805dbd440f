# Fails unless the library at LIBRARY exports exactly OnPluginRegister.
execute_process(COMMAND ${NM} -D --defined-only --format=just-symbols ${LIBRARY}
  OUTPUT_VARIABLE symbols OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols STREQUAL "OnPluginRegister")
  message(FATAL_ERROR "exported symbols are not just OnPluginRegister:\n${symbols}")
endif()
