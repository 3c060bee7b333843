# Flags, and the functions that make targets. The include folder of a subsystem holds that subsystem alone, so a
# header is reached as "task/TaskRunner.h" only by targets that link ravo_task: an include against the direction
# common <- log <- task <- {ipc, engine, slots, monitor, power} <- manager does not build.

add_library(ravo_flags INTERFACE)
target_compile_features(ravo_flags INTERFACE cxx_std_20)
target_compile_options(ravo_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${RAVO_WARNINGS_AS_ERRORS}>:-Werror>)
if(WIN32)
  # Windows 7 is the oldest system; the newer calls are looked up by name.
  target_compile_definitions(ravo_flags INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE _WIN32_WINNT=0x0601)
endif()

if(RAVO_SANITIZE)
  add_compile_options(-fsanitize=${RAVO_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${RAVO_SANITIZE})
  if(RAVO_SANITIZE MATCHES undefined)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    add_compile_options(-fsanitize-ignorelist=${CMAKE_SOURCE_DIR}/cmake/ubsan.ignore)
  endif()
  if(RAVO_SANITIZE MATCHES address)
    add_compile_definitions(RAVO_SANITIZE_ADDRESS)
  endif()
endif()

function(ravo_include_root target name)
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${root})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${name} SYMBOLIC)
  target_include_directories(${target} PUBLIC ${root})
endfunction()

# ravo_subsystem(NAME [SOURCES ...] [WIN ...] [POSIX ...] [DEPENDS ...]): the static library ravo_NAME of the current
# folder. WIN and POSIX name files below win/ and posix/.
function(ravo_subsystem name)
  cmake_parse_arguments(arg "" "" "SOURCES;WIN;POSIX;DEPENDS" ${ARGN})
  if(WIN32)
    list(TRANSFORM arg_WIN PREPEND win/ OUTPUT_VARIABLE platform)
  else()
    list(TRANSFORM arg_POSIX PREPEND posix/ OUTPUT_VARIABLE platform)
  endif()
  add_library(ravo_${name} STATIC ${arg_SOURCES} ${platform})
  target_link_libraries(ravo_${name} PUBLIC ${arg_DEPENDS} PRIVATE ravo_flags)
  ravo_include_root(ravo_${name} ${name})
endfunction()

# ravo_test(NAME SOURCES ... DEPENDS ...): the program NAME_tests; CTest sees each of its tests.
function(ravo_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name}_tests ${arg_SOURCES})
  target_link_libraries(${name}_tests PRIVATE ${arg_DEPENDS} ravo_test_support GTest::gmock_main ravo_flags)
  set_target_properties(${name}_tests PROPERTIES RAVO_LOG ravo_test_support)
  gtest_discover_tests(${name}_tests TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60)
endfunction()
