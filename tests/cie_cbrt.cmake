# The LUV and Lab kernels' fast cube root is internal: its agreement with the
# power routine is tested by compiling both straight into a small program.
if(TARGET zil_power_tables)
  add_executable(zilcc_cie_cbrt_tests ${PROJECT_SOURCE_DIR}/tests/internal/cie_cbrt_test.cpp
    ${PROJECT_SOURCE_DIR}/primitives/power_one.cpp)
  add_dependencies(zilcc_cie_cbrt_tests zil_power_tables)
  target_include_directories(zilcc_cie_cbrt_tests PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/frame
    ${PROJECT_SOURCE_DIR}/primitives ${PROJECT_SOURCE_DIR}/include ${ZIL_GEN_DIR})
  target_link_libraries(zilcc_cie_cbrt_tests PRIVATE GTest::gtest_main)
  gtest_discover_tests(zilcc_cie_cbrt_tests DISCOVERY_TIMEOUT 60)
endif()
