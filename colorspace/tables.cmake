# The 8-bit HSV and HLS tables are computed on the build host by the library's
# own per-pixel formulas and compiled in as read-only data.
foreach(t hsv8 hls8)
  add_executable(zil_${t}_tables_gen ${CMAKE_CURRENT_LIST_DIR}/gen/${t}_tables_gen.cpp)
  target_include_directories(zil_${t}_tables_gen PRIVATE
    ${CMAKE_CURRENT_LIST_DIR} ${CMAKE_CURRENT_LIST_DIR}/../frame ${CMAKE_CURRENT_LIST_DIR}/../include)
  add_custom_command(OUTPUT ${ZIL_GEN_DIR}/${t}_tables.cpp
    COMMAND zil_${t}_tables_gen ${ZIL_GEN_DIR}/${t}_tables.cpp
    DEPENDS zil_${t}_tables_gen VERBATIM)
  target_sources(zilccmx PRIVATE ${ZIL_GEN_DIR}/${t}_tables.cpp)
  set_source_files_properties(${ZIL_GEN_DIR}/${t}_tables.cpp PROPERTIES INCLUDE_DIRECTORIES ${CMAKE_CURRENT_LIST_DIR})
endforeach()
