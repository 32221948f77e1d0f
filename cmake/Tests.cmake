# inkloom_test(NAME LIBRARY lib... [SOURCES file...] [ENGINE] [FUZZ] [TIMEOUT seconds])
#   One Qt Test program made of NAME.cpp and the given sources.
#   ENGINE: needs the web engine or a screen; such tests run one at a time.
#   FUZZ:   carries the label "fuzz", the set that ./test runs again under the sanitizers; target fuzz_tests builds it.
add_custom_target(fuzz_tests)

function(inkloom_test name)
  cmake_parse_arguments(ARG "ENGINE;FUZZ" "TIMEOUT" "LIBRARY;SOURCES" ${ARGN})
  add_executable(${name} ${name}.cpp ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARY} inkloom_test_support Qt6::Test inkloom_warnings)
  target_compile_definitions(${name} PRIVATE INKLOOM_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  # The crash handler forks to call a debugger and can hang there; a plain crash says enough.
  add_test(NAME ${name} COMMAND ${name} -nocrashhandler)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 60)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  if(ARG_ENGINE)
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON LABELS engine)
  endif()
  if(ARG_FUZZ)
    set_tests_properties(${name} PROPERTIES LABELS fuzz)
    add_dependencies(fuzz_tests ${name})
  endif()
endfunction()
