# Tests that run the zilcc command-line tool (tests/cli/cli_test.sh), one per
# group of checks. The optional families are those the export list holds.
if(TARGET zilcc)
  find_program(ZIL_BASH bash)
  set(zil_cli_families ${ZIL_FAMILIES})
  string(REPLACE ";" " " zil_cli_families "${zil_cli_families}")
  foreach(group IN ITEMS basics convert demosaic dither bad_input demo outputs pipes ranges ahd_sizes)
    add_test(NAME cli_${group}
      COMMAND ${ZIL_BASH} ${CMAKE_CURRENT_SOURCE_DIR}/cli/cli_test.sh $<TARGET_FILE:zilcc>
              ${CMAKE_CURRENT_BINARY_DIR}/cli_work/${group} ${group} ${ZIL_EXPORTS_FILE} "${zil_cli_families}")
    set_tests_properties(cli_${group} PROPERTIES TIMEOUT 120 FAIL_REGULAR_EXPRESSION "FAIL:")
  endforeach()
endif()

# A family's own tool checks: tests/cli/<name>_cli.sh ZILCC WORKDIR, run as the
# test cli_<name>. A script prints "FAIL: ..." for each failed check and exits
# non-zero if any failed.
if(TARGET zilcc)
  file(GLOB zil_cli_scripts CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/cli/*_cli.sh)
  foreach(script IN LISTS zil_cli_scripts)
    get_filename_component(name ${script} NAME_WE)
    string(REGEX REPLACE "_cli$" "" name ${name})
    add_test(NAME cli_${name}
      COMMAND ${ZIL_BASH} ${script} $<TARGET_FILE:zilcc> ${CMAKE_CURRENT_BINARY_DIR}/cli_work/${name})
    set_tests_properties(cli_${name} PROPERTIES TIMEOUT 120 FAIL_REGULAR_EXPRESSION "FAIL:")
  endforeach()
endif()
