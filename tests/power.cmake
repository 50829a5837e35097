# The power kernels are internal to the library; their values are tested by
# compiling their sources straight into a small test program.
add_executable(zilcc_power_tests ${PROJECT_SOURCE_DIR}/tests/internal/power_test.cpp
  ${PROJECT_SOURCE_DIR}/primitives/power_one.cpp ${PROJECT_SOURCE_DIR}/primitives/power_vec.cpp)
add_dependencies(zilcc_power_tests zil_power_tables)
target_include_directories(zilcc_power_tests PRIVATE ${PROJECT_SOURCE_DIR}/primitives ${PROJECT_SOURCE_DIR}/frame
  ${PROJECT_SOURCE_DIR}/include ${ZIL_GEN_DIR})
target_link_libraries(zilcc_power_tests PRIVATE GTest::gtest_main quadmath)
gtest_discover_tests(zilcc_power_tests DISCOVERY_TIMEOUT 60)
