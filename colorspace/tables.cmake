# The 8-bit HLS tables are computed on the build host from the library's own
# formulas and compiled in as read-only data.
add_executable(zil_hls8_tables_gen ${CMAKE_CURRENT_LIST_DIR}/gen/hls8_tables_gen.cpp)
target_include_directories(zil_hls8_tables_gen PRIVATE ${CMAKE_CURRENT_LIST_DIR}
  ${CMAKE_CURRENT_LIST_DIR}/../frame ${CMAKE_CURRENT_LIST_DIR}/../include)
add_custom_command(OUTPUT ${ZIL_GEN_DIR}/hls8_tables.cpp
  COMMAND zil_hls8_tables_gen ${ZIL_GEN_DIR}/hls8_tables.cpp
  DEPENDS zil_hls8_tables_gen VERBATIM)
target_sources(zilccmx PRIVATE ${ZIL_GEN_DIR}/hls8_tables.cpp)
set_source_files_properties(${ZIL_GEN_DIR}/hls8_tables.cpp PROPERTIES INCLUDE_DIRECTORIES ${CMAKE_CURRENT_LIST_DIR})
