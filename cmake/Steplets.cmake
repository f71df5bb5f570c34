# Helpers shared by the project's CMake files.

# steplets_unit_test(NAME SOURCES... LIBS ...) : one GoogleTest executable, each test a CTest test
# labelled "unit" (or LABEL given). In the sanitizer tree, where starting a process costs a
# second or more, the executable's tests run together in one CTest test, unless ALONE says that
# each needs a process of its own (the first failure of a process is the one reported).
function(steplets_gtest name)
  cmake_parse_arguments(T "ALONE" "LABEL" "SOURCES;LIBS" ${ARGN})
  if(NOT T_LABEL)
    set(T_LABEL unit)
  endif()
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} steplets_testsupport GTest::gtest GTest::gtest_main GTest::gmock)
  set(environment "QT_QPA_PLATFORM=offscreen;TZ=UTC;LC_ALL=C.UTF-8")
  if(STEPLETS_SANITIZE AND NOT T_ALONE)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS ${T_LABEL} ENVIRONMENT "${environment}" TIMEOUT 900)
  else()
    gtest_discover_tests(${name} PROPERTIES LABELS ${T_LABEL} ENVIRONMENT "${environment}" DISCOVERY_TIMEOUT 60)
  endif()
endfunction()

include(GoogleTest)
