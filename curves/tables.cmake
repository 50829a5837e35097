# The gamma tables are computed on the build host by their generating rule and
# compiled in as read-only data.
add_executable(zil_gamma_tables_gen ${CMAKE_CURRENT_LIST_DIR}/gen/gamma_tables_gen.cpp)
target_link_libraries(zil_gamma_tables_gen PRIVATE quadmath m)
add_custom_command(OUTPUT ${ZIL_GEN_DIR}/gamma_tables.cpp
  COMMAND zil_gamma_tables_gen ${ZIL_GEN_DIR}/gamma_tables.cpp
  DEPENDS zil_gamma_tables_gen VERBATIM)
target_sources(zilccmx PRIVATE ${ZIL_GEN_DIR}/gamma_tables.cpp)
set_source_files_properties(${ZIL_GEN_DIR}/gamma_tables.cpp PROPERTIES INCLUDE_DIRECTORIES ${CMAKE_CURRENT_LIST_DIR})
