# The 8-bit RGB to HSV tables are computed on the build host by the library's
# own per-pixel formula and compiled in as read-only data.
add_executable(zil_hsv8_tables_gen ${CMAKE_CURRENT_LIST_DIR}/gen/hsv8_tables_gen.cpp)
target_include_directories(zil_hsv8_tables_gen PRIVATE
  ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_SOURCE_DIR}/frame ${CMAKE_SOURCE_DIR}/include)
add_custom_command(OUTPUT ${ZIL_GEN_DIR}/hsv8_tables.cpp
  COMMAND zil_hsv8_tables_gen ${ZIL_GEN_DIR}/hsv8_tables.cpp
  DEPENDS zil_hsv8_tables_gen VERBATIM)
target_sources(zilccmx PRIVATE ${ZIL_GEN_DIR}/hsv8_tables.cpp)
set_source_files_properties(${ZIL_GEN_DIR}/hsv8_tables.cpp PROPERTIES INCLUDE_DIRECTORIES ${CMAKE_CURRENT_LIST_DIR})
