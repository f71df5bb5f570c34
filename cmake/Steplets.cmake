# Helpers shared by the project's CMake files.

# steplets_unit_test(NAME SOURCES... LIBS ...) : one GoogleTest executable, each test a CTest test
# labelled "unit" (or LABEL given).
function(steplets_gtest name)
  cmake_parse_arguments(T "" "LABEL" "SOURCES;LIBS" ${ARGN})
  if(NOT T_LABEL)
    set(T_LABEL unit)
  endif()
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} steplets_testsupport GTest::gtest GTest::gtest_main GTest::gmock)
  gtest_discover_tests(${name}
    PROPERTIES LABELS ${T_LABEL} ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TZ=UTC;LC_ALL=C.UTF-8"
    DISCOVERY_TIMEOUT 60)
endfunction()

include(GoogleTest)
