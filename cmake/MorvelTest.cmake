# morvel_add_test(NAME name SOURCES a.cpp ... [GUI] [BOTH_BACKENDS])
# One QtTest executable per subject, run by CTest on the offscreen platform;
# BOTH_BACKENDS runs it again on PostgreSQL as `{name}_pg`.
function(morvel_add_test)
  cmake_parse_arguments(T "GUI;BOTH_BACKENDS" "NAME" "SOURCES" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  target_link_libraries(${T_NAME} PRIVATE morvel_core morvel_testsupport Qt6::Test)
  if(T_GUI)
    target_link_libraries(${T_NAME} PRIVATE morvel_ui)
  endif()
  add_test(NAME ${T_NAME} COMMAND ${T_NAME})
  set_tests_properties(${T_NAME} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;MORVEL_ASSETS=${MORVEL_ASSETS_DIR}"
    TIMEOUT 300)
  if(T_BOTH_BACKENDS)
    morvel_add_postgres_run(${T_NAME})
  endif()
endfunction()

# The tests' own PostgreSQL server: started once before the first test that
# needs it and stopped after the last, on a socket private to this build tree.
string(MD5 _morvel_build_hash "${CMAKE_BINARY_DIR}")
string(SUBSTRING "${_morvel_build_hash}" 0 10 _morvel_build_hash)
set(MORVEL_TEST_PG_DIR "/tmp/morvel-pg-${_morvel_build_hash}")
set(MORVEL_TEST_PG_PORT 55432)
set(MORVEL_TEST_PG "host=${MORVEL_TEST_PG_DIR}/sock port=${MORVEL_TEST_PG_PORT} user=morvel dbname=postgres")

function(morvel_postgres_fixture)
  # Once for the whole tree: a test name is per folder, a fixture is not.
  get_property(made GLOBAL PROPERTY MORVEL_POSTGRES_FIXTURE)
  if(made)
    return()
  endif()
  set_property(GLOBAL PROPERTY MORVEL_POSTGRES_FIXTURE TRUE)
  set(script ${PROJECT_SOURCE_DIR}/tests/support/pg_server.sh)
  add_test(NAME postgres_start COMMAND bash ${script} start ${MORVEL_TEST_PG_DIR} ${MORVEL_TEST_PG_PORT})
  add_test(NAME postgres_stop COMMAND bash ${script} stop ${MORVEL_TEST_PG_DIR})
  set_tests_properties(postgres_start PROPERTIES FIXTURES_SETUP postgres LABELS pg)
  set_tests_properties(postgres_stop PROPERTIES FIXTURES_CLEANUP postgres LABELS pg)
endfunction()

# Runs a test a second time with its databases on the tests' PostgreSQL server
# (the test support reads MORVEL_TEST_BACKEND and MORVEL_TEST_PG).
function(morvel_add_postgres_run name)
  morvel_postgres_fixture()
  add_test(NAME ${name}_pg COMMAND ${name})
  set_tests_properties(${name}_pg PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;MORVEL_ASSETS=${MORVEL_ASSETS_DIR};MORVEL_TEST_BACKEND=postgres;MORVEL_TEST_PG=${MORVEL_TEST_PG}"
    FIXTURES_REQUIRED postgres
    LABELS pg
    TIMEOUT 300)
endfunction()
