# Robustness: the fuzz target (as a corpus replayer, and with libFuzzer in the
# `fuzz` preset) and the concurrency test (also under ThreadSanitizer in the
# `tsan` preset). Included by tests/CMakeLists.txt.
option(ZIL_FUZZ "Build the libFuzzer target zilcc_fuzz (clang only)" OFF)
option(ZIL_TSAN "Build the library and the concurrency test with -fsanitize=thread" OFF)

# The fuzz target drives only the families whose names are in the export list.
set(ZIL_ROBUST_DEFS ${ZIL_FAMILY_DEFS})

set(ZIL_FUZZ_DIR ${CMAKE_CURRENT_SOURCE_DIR}/fuzz)
add_library(zilcc_fuzz_harness STATIC ${ZIL_FUZZ_DIR}/harness.cpp)
target_link_libraries(zilcc_fuzz_harness PUBLIC zilccmx)
target_compile_definitions(zilcc_fuzz_harness PUBLIC ${ZIL_ROBUST_DEFS})
target_include_directories(zilcc_fuzz_harness PUBLIC ${ZIL_FUZZ_DIR})

if(ZIL_TSAN)
  # The library too, so that its own accesses are seen; its runtime comes with the program.
  target_compile_options(zilccmx PRIVATE -fsanitize=thread)
  target_link_options(zilccmx PRIVATE -Wl,-z,undefs)
  target_compile_options(zilcc_fuzz_harness PUBLIC -fsanitize=thread)
  target_link_options(zilcc_fuzz_harness PUBLIC -fsanitize=thread)
endif()

# The target as a plain program: replays files, or runs a fixed generator.
add_executable(zilcc_fuzz_replay ${ZIL_FUZZ_DIR}/replay_main.cpp ${ZIL_FUZZ_DIR}/fuzz_target.cpp)
target_link_libraries(zilcc_fuzz_replay PRIVATE zilcc_fuzz_harness)

add_test(NAME fuzz_corpus_replay COMMAND zilcc_fuzz_replay ${ZIL_FUZZ_DIR}/corpus)
# Deterministic bounded run: every export in turn with generated arguments.
add_test(NAME fuzz_generated COMMAND zilcc_fuzz_replay --generate 100000 1)
set_tests_properties(fuzz_corpus_replay fuzz_generated PROPERTIES TIMEOUT 300)

# The harness's own checks must be able to fail: faulty stand-ins are caught.
add_executable(zilcc_fuzz_selftest ${ZIL_FUZZ_DIR}/selftest.cpp)
target_link_libraries(zilcc_fuzz_selftest PRIVATE zilcc_fuzz_harness)
add_test(NAME fuzz_harness_selftest COMMAND zilcc_fuzz_selftest)

# Per-export hashes of results, for comparing differently built trees.
add_executable(zilcc_digest ${ZIL_FUZZ_DIR}/digest.cpp)
target_link_libraries(zilcc_digest PRIVATE zilcc_fuzz_harness)

add_executable(zilcc_concurrency ${ZIL_FUZZ_DIR}/concurrency.cpp)
target_link_libraries(zilcc_concurrency PRIVATE zilcc_fuzz_harness)
find_package(Threads REQUIRED)
target_link_libraries(zilcc_concurrency PRIVATE Threads::Threads)
add_test(NAME concurrency COMMAND zilcc_concurrency 8 4)
set_tests_properties(concurrency PROPERTIES TIMEOUT 600)

if(ZIL_FUZZ)
  # libFuzzer over the library with coverage feedback from the library itself.
  # clang knows no -fno-reorder-blocks-and-partition (it never splits functions).
  get_target_property(zil_lib_opts zilccmx COMPILE_OPTIONS)
  string(REPLACE "-fno-reorder-blocks-and-partition;" "" zil_lib_opts "${zil_lib_opts}")
  set_target_properties(zilccmx PROPERTIES COMPILE_OPTIONS "${zil_lib_opts}")
  set_source_files_properties(${PROJECT_SOURCE_DIR}/frame/freestanding.cpp DIRECTORY ${PROJECT_SOURCE_DIR}
    PROPERTIES COMPILE_OPTIONS "-fno-builtin")
  target_compile_options(zilccmx PRIVATE -fsanitize=fuzzer-no-link)
  target_compile_options(zilcc_fuzz_harness PUBLIC -fsanitize=fuzzer-no-link)
  add_executable(zilcc_fuzz ${ZIL_FUZZ_DIR}/fuzz_target.cpp)
  target_link_libraries(zilcc_fuzz PRIVATE zilcc_fuzz_harness)
  target_link_options(zilcc_fuzz PRIVATE -fsanitize=fuzzer)
endif()

# Memcheck over the family tests and the fuzz corpus, on the uninstrumented
# object: it finds reads of unset bytes, which the address sanitizer does not.
find_program(ZIL_VALGRIND valgrind)
if(ZIL_VALGRIND AND NOT ZIL_SANITIZE AND NOT ZIL_TSAN AND NOT ZIL_FUZZ)
  set(ZIL_VALGRIND_ARGS --tool=memcheck --error-exitcode=99 --track-origins=yes --quiet)
  add_test(NAME valgrind_family_tests
    COMMAND ${ZIL_VALGRIND} ${ZIL_VALGRIND_ARGS} $<TARGET_FILE:zilcc_tests> --gtest_filter=-Frame*:*RegionsEqualTheWholeImage*)
  add_test(NAME valgrind_fuzz_corpus
    COMMAND ${ZIL_VALGRIND} ${ZIL_VALGRIND_ARGS} $<TARGET_FILE:zilcc_fuzz_replay> ${ZIL_FUZZ_DIR}/corpus)
  set_tests_properties(valgrind_family_tests valgrind_fuzz_corpus PROPERTIES TIMEOUT 900)
endif()
