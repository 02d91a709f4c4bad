# tessaly_add_test(NAME [BENCH | FUZZ] [WIDGETS] [OWN_MAIN] [POSTGRES] [PREFIX P]
#                  SOURCES ... [LIBS ...] [DEFINITIONS ...])
#
# Makes every test and benchmark binary of the project:
# - by default a GoogleTest binary: it links the test support and the main
#   function with a GUI application object (WIDGETS: with a widgets one), and
#   CTest runs each of its tests on its own, on the offscreen platform, named
#   with PREFIX; POSTGRES makes the tests wait for the loopback PostgreSQL
#   server that the db_postgres fixture starts;
# - with BENCH a Google Benchmark binary, with the library's main function
#   unless OWN_MAIN;
# - with FUZZ a libFuzzer target with the address and undefined-behaviour
#   sanitizers (a clang build with TESSALY_FUZZ on).
function(tessaly_add_test name)
  cmake_parse_arguments(ARG "BENCH;FUZZ;WIDGETS;OWN_MAIN;POSTGRES" "PREFIX" "SOURCES;LIBS;DEFINITIONS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  tessaly_warnings(${name})
  if(ARG_DEFINITIONS)
    target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
  endif()
  if(ARG_FUZZ)
    target_link_libraries(${name} PRIVATE ${ARG_LIBS})
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
    return()
  endif()
  if(ARG_BENCH)
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} benchmark::benchmark)
    if(NOT ARG_OWN_MAIN)
      target_link_libraries(${name} PRIVATE benchmark::benchmark_main)
    endif()
    return()
  endif()
  if(ARG_WIDGETS)
    set(main tessaly_test_main_widgets)
  else()
    set(main tessaly_test_main)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} ${main} tessaly_test_support)
  set(properties ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  if(ARG_POSTGRES)
    list(APPEND properties FIXTURES_REQUIRED db_postgres)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 TEST_PREFIX "${ARG_PREFIX}" PROPERTIES ${properties})
endfunction()
