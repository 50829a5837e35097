# The power kernels' tables of logarithms and powers of two are computed on the
# build host in 113-bit precision and compiled in as read-only data.
add_executable(zil_power_tables_gen ${CMAKE_CURRENT_LIST_DIR}/gen/power_tables_gen.cpp)
target_link_libraries(zil_power_tables_gen PRIVATE quadmath)
add_custom_command(OUTPUT ${ZIL_GEN_DIR}/power_tables.inc
  COMMAND zil_power_tables_gen ${ZIL_GEN_DIR}/power_tables.inc
  DEPENDS zil_power_tables_gen VERBATIM)
add_custom_target(zil_power_tables DEPENDS ${ZIL_GEN_DIR}/power_tables.inc)
add_dependencies(zilccmx zil_power_tables)
target_include_directories(zilccmx PRIVATE ${ZIL_GEN_DIR})
