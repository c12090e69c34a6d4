# tolva_add_test(NAME COMMAND [ARGS...]): a ctest program that runs in a home
# of its own (tests/support/run_in_test_home.sh), so programs run side by
# side never share a settings file, a database or a temporary name, and none
# touches the real home. COMMAND may name an executable target.
set(TOLVA_TEST_HOMES ${PROJECT_BINARY_DIR}/test-homes)
function(tolva_add_test name command)
  if(TARGET ${command})
    set(command $<TARGET_FILE:${command}>)
  endif()
  add_test(NAME ${name}
    COMMAND ${PROJECT_SOURCE_DIR}/tests/support/run_in_test_home.sh ${TOLVA_TEST_HOMES} ${command} ${ARGN})
endfunction()
