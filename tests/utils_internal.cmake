# The image and vector utilities are internal to the library; they are tested
# by compiling their source straight into a small test program.
add_executable(zilcc_utils_tests ${PROJECT_SOURCE_DIR}/tests/internal/utils_test.cpp
               ${PROJECT_SOURCE_DIR}/primitives/utils.cpp)
target_include_directories(zilcc_utils_tests PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/frame
                           ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(zilcc_utils_tests PRIVATE GTest::gtest_main)
gtest_discover_tests(zilcc_utils_tests DISCOVERY_TIMEOUT 60)
