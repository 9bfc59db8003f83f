# morvel_add_test(NAME name SOURCES a.cpp ... [GUI])
# One QtTest executable per subject, run by CTest on the offscreen platform.
function(morvel_add_test)
  cmake_parse_arguments(T "GUI" "NAME" "SOURCES" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  target_link_libraries(${T_NAME} PRIVATE morvel_core morvel_testsupport Qt6::Test)
  if(T_GUI)
    target_link_libraries(${T_NAME} PRIVATE morvel_ui)
  endif()
  add_test(NAME ${T_NAME} COMMAND ${T_NAME})
  set_tests_properties(${T_NAME} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;MORVEL_ASSETS=${MORVEL_ASSETS_DIR}"
    TIMEOUT 300)
endfunction()
