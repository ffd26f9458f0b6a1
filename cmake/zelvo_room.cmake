# zelvo_room(NAME SOURCES a.cpp HEADERS a.h USES zelvo::platform LINKS CLI11::CLI11)
#
# One room of the house: a static library zelvo_NAME (alias zelvo::NAME) with the common flags, whose headers are each
# verified to compile alone. A room without sources is an interface library of its headers. LINKS are what its sources
# stand on, PUBLIC_LINKS what its headers name too.
function(zelvo_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;HEADERS;USES;LINKS;PUBLIC_LINKS" ${ARGN})
  string(REPLACE "/" "_" target_name "zelvo_${name}")
  string(REPLACE "/" "_" alias_name "${name}")
  set(alias_name "zelvo::${alias_name}")
  if(ROOM_SOURCES)
    add_library(${target_name} STATIC ${ROOM_SOURCES})
    target_link_libraries(${target_name} PUBLIC ${ROOM_USES} ${ROOM_PUBLIC_LINKS} PRIVATE zelvo_flags ${ROOM_LINKS})
    if("Qt6::Widgets" IN_LIST ROOM_PUBLIC_LINKS)
      zelvo_precompile(${target_name} qt)
    else()
      zelvo_precompile(${target_name} std)
    endif()
    zelvo_join_sources(${target_name} ${ZELVO_JOIN_ROOMS})
    set(scope PUBLIC)
  else()
    add_library(${target_name} INTERFACE)
    target_link_libraries(${target_name} INTERFACE ${ROOM_USES} ${ROOM_LINKS})
    set(scope INTERFACE)
  endif()
  add_library(${alias_name} ALIAS ${target_name})
  target_compile_features(${target_name} ${scope} cxx_std_20)
  target_include_directories(${target_name} ${scope} ${PROJECT_SOURCE_DIR})
  if(ROOM_HEADERS)
    target_sources(${target_name} ${scope} FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${ROOM_HEADERS})
  endif()
endfunction()

# zelvo_join_sources(TARGET IS_WANTED): where it is wanted, the sources of a target are compiled several at a time,
# since each of them takes longer over its headers than over itself. A name of an unnamed namespace is then one of all
# of them.
function(zelvo_join_sources target is_wanted)
  if(is_wanted)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
  endif()
endfunction()

# zelvo_test(NAME SOURCES a_test.cpp USES zelvo::engine)
#
# One GoogleTest program per room. Each case becomes a CTest test; none may take longer than five minutes.
function(zelvo_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE zelvo_flags zelvo_test_flags ${TEST_USES} GTest::gmock GTest::gtest_main)
  zelvo_join_sources(${name} ${ZELVO_JOIN_TESTS})
  if("zelvo::platform_qt" IN_LIST TEST_USES)
    zelvo_precompile(${name} qt_test)
  else()
    zelvo_precompile(${name} test)
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
