# The Python package's tests (pytest), with the package laid out in the build
# folder and the tool for comparisons. They need python3 with numpy and pytest
# (Debian: python3-numpy, python3-pytest); without them the test is skipped.
if(TARGET zilcc_python)
  set(zil_py_test "")
  foreach(py IN ITEMS ${Python3_EXECUTABLE} /usr/bin/python3 python3)
    execute_process(COMMAND ${py} -c "import numpy, pytest" RESULT_VARIABLE rc OUTPUT_QUIET ERROR_QUIET)
    if(rc EQUAL 0)
      set(zil_py_test ${py})
      break()
    endif()
  endforeach()
  if(zil_py_test)
    set(zil_py_env "PYTHONPATH=${PROJECT_BINARY_DIR}/python" "PYTHONDONTWRITEBYTECODE=1")
    if(TARGET zilcc)
      list(APPEND zil_py_env "ZILCC_TOOL=$<TARGET_FILE:zilcc>")
    endif()
    add_test(NAME python
      COMMAND ${CMAKE_COMMAND} -E env ${zil_py_env}
              ${zil_py_test} -m pytest -q -p no:cacheprovider ${CMAKE_CURRENT_SOURCE_DIR}/python)
    if(ZIL_SANITIZE)  # the sanitized library needs its runtime loaded first
      set_tests_properties(python PROPERTIES DISABLED ON)
    endif()
  else()
    add_test(NAME python COMMAND ${CMAKE_COMMAND} -E echo "python3 with numpy and pytest not found: skipped")
    set_tests_properties(python PROPERTIES SKIP_REGULAR_EXPRESSION "skipped")
  endif()
endif()

# A prefix install: the package finds the library with only the prefix's
# package folder on the Python path.
if(TARGET zilcc_python AND zil_py_test AND NOT ZIL_SANITIZE)
  set(zil_py_prefix ${CMAKE_CURRENT_BINARY_DIR}/python_install)
  add_test(NAME python_install
    COMMAND bash -c "rm -rf '${zil_py_prefix}' && '${CMAKE_COMMAND}' --install '${PROJECT_BINARY_DIR}' --prefix '${zil_py_prefix}' >/dev/null && cd / && env -i PATH=/usr/bin:/bin PYTHONPATH='${zil_py_prefix}/${ZIL_PYTHON_SITE}' '${zil_py_test}' -c 'import zilcc; assert zilcc.LIBRARY_PATH.startswith(\"${zil_py_prefix}/\"), zilcc.LIBRARY_PATH; print(zilcc.version()[\"version\"])'")
endif()
