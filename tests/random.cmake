# The uniform generator is internal to the library; its stream is tested by
# compiling its source straight into a small test program.
add_executable(zilcc_random_tests ${PROJECT_SOURCE_DIR}/tests/random_stream.cpp ${PROJECT_SOURCE_DIR}/primitives/random.cpp)
target_include_directories(zilcc_random_tests PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/frame ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(zilcc_random_tests PRIVATE GTest::gtest_main)
gtest_discover_tests(zilcc_random_tests DISCOVERY_TIMEOUT 60)
