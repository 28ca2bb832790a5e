# Shared settings and helpers of the zvgl2 build.

# Warnings on, everywhere we compile our own code.
function(zvgl_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
endfunction()

# The library and the board are built without exceptions and RTTI.
function(zvgl_no_exceptions target)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti>)
endfunction()

# Windows binaries carry their C and C++ runtime inside, so that they run under Wine
# (and on a user's machine) with nothing beside them but our own DLLs.
if(WIN32)
  add_link_options(-static-libgcc $<$<LINK_LANGUAGE:CXX>:-static-libstdc++> -static)
endif()

# 64-bit Windows keeps the stack aligned to 16 bytes only, so a 32-byte register spilled by
# an AVX2 routine may land on a slot that is not 32-byte aligned. The assembler writes every
# aligned vector move as its unaligned form (the same speed on aligned data), so that no such
# spill can fault; the AVX2 forms of the library and the board are then safe on Windows too.
if(WIN32 AND CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  add_compile_options(-Wa,-muse-unaligned-vector-move)
endif()

if(ZVGL_SANITIZE AND NOT WIN32)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# Collects the sources of one component folder. A file whose name ends in _win32 is built
# only for Windows, one ending in _posix only elsewhere; everything else everywhere.
function(zvgl_collect_sources out_var)
  set(result)
  foreach(dir IN LISTS ARGN)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${dir}/*.cpp ${dir}/*.c)
    foreach(f IN LISTS found)
      get_filename_component(stem ${f} NAME_WE)
      if(stem MATCHES "_win32$" AND NOT WIN32)
        continue()
      endif()
      if(stem MATCHES "_posix$" AND WIN32)
        continue()
      endif()
      list(APPEND result ${f})
    endforeach()
  endforeach()
  set(${out_var} ${result} PARENT_SCOPE)
endfunction()

# GoogleTest: Debian's packaged library on Linux; for the MinGW targets the same
# sources (Debian ships them under /usr/src/googletest) built with the cross compiler.
if(ZVGL_BUILD_TESTS)
  if(WIN32)
    if(NOT TARGET gtest)
      set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
      set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
      set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
      add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    endif()
    set(ZVGL_GTEST_LIBS gtest gmock gtest_main)
  else()
    find_package(GTest REQUIRED)
    set(ZVGL_GTEST_LIBS GTest::gtest GTest::gmock GTest::gtest_main)
  endif()
  include(GoogleTest)
endif()

# Adds one GoogleTest program and registers it with ctest.
#   zvgl_add_gtest(name SOURCES a.cpp b.cpp LIBS lib1 lib2 [LINUX_ONLY] [WINDOWS_ONLY])
# On Linux every test case becomes its own ctest entry; a Windows program runs under Wine
# (the cross-compiling emulator) as one ctest entry, since discovery would start Wine at build time.
function(zvgl_add_gtest name)
  cmake_parse_arguments(T "LINUX_ONLY;WINDOWS_ONLY" "" "SOURCES;LIBS" ${ARGN})
  if(T_LINUX_ONLY AND WIN32)
    return()
  endif()
  if(T_WINDOWS_ONLY AND NOT WIN32)
    return()
  endif()
  add_executable(${name} ${T_SOURCES})
  target_link_libraries(${name} PRIVATE ${T_LIBS} ${ZVGL_GTEST_LIBS})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/common)
  target_compile_definitions(${name} PRIVATE ZVGL_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  zvgl_warnings(${name})
  if(WIN32)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES LABELS windows TIMEOUT 600)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS linux TIMEOUT 300)
  endif()
endfunction()
