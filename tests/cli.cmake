# Tests that run the zilcc command-line tool (tests/cli/cli_test.sh), one per
# group of checks. The optional families are those the export list holds.
if(TARGET zilcc)
  find_program(ZIL_BASH bash)
  set(zil_cli_families ${ZIL_FAMILIES})
  string(REPLACE ";" " " zil_cli_families "${zil_cli_families}")
  foreach(group IN ITEMS basics convert demosaic dither bad_input demo)
    add_test(NAME cli_${group}
      COMMAND ${ZIL_BASH} ${CMAKE_CURRENT_SOURCE_DIR}/cli/cli_test.sh $<TARGET_FILE:zilcc>
              ${CMAKE_CURRENT_BINARY_DIR}/cli_work/${group} ${group} ${ZIL_EXPORTS_FILE} "${zil_cli_families}")
    set_tests_properties(cli_${group} PROPERTIES TIMEOUT 120 FAIL_REGULAR_EXPRESSION "FAIL:")
  endforeach()
endif()
