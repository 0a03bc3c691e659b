# A room is a folder. name.cpp is logic: standard library only, built everywhere, which is what
# keeps Windows out of it. name_win.cpp talks to Windows and exists in the win32 build alone.

# GCC 12 sees an overlap in every "text" + std::string that it inlines: -Wno-restrict.
set(TONVISTA_WARNINGS -Wall -Wextra -Wshadow -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
add_library(tonvista_options INTERFACE)
target_include_directories(tonvista_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/app)
if(WIN32)
  target_compile_definitions(tonvista_options INTERFACE WIN32_LEAN_AND_MEAN NOMINMAX STRICT)
  target_link_options(tonvista_options INTERFACE -static) # also where no toolchain file says so
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86")
    # SSE for speed and for the same bits as the native build; callbacks may enter with a stack
    # that is only 4-byte aligned.
    target_compile_options(tonvista_options INTERFACE -msse2 -mfpmath=sse -ffp-contract=off
                           -mstackrealign)
  endif()
else()
  target_compile_options(tonvista_options INTERFACE -ffp-contract=off)
endif()
if(TONVISTA_SANITIZE)
  # The checks that are put in make GCC lose sight of what was initialised; the plain builds warn.
  target_compile_options(tonvista_options INTERFACE -fsanitize=address,undefined
                         -fno-sanitize-recover=all -fno-omit-frame-pointer
                         $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(tonvista_options INTERFACE -fsanitize=address,undefined)
endif()
if(TONVISTA_FUZZ)
  target_compile_options(tonvista_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                         -fno-sanitize-recover=all)
  target_link_options(tonvista_options INTERFACE -fsanitize=address,undefined)
endif()

# The rooms of the program, the lowest last.
set(TONVISTA_ROOMS app media archive cd cdinfo waves mixer ui core)
# Those that are DLLs of their own: folder, target and file name.
set(TONVISTA_DLL_ROOMS discdrive extractor)

set(TONVISTA_SYSTEM_LIBS user32 gdi32 advapi32 comctl32 comdlg32 shell32 ole32 oleaut32 strmiids uuid
    winmm shlwapi winspool)

function(tonvista_split_sources folder logic_out win_out)
  file(GLOB all CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  set(win ${all})
  list(FILTER win INCLUDE REGEX "_win\\.cpp$")
  set(logic ${all})
  list(FILTER logic EXCLUDE REGEX "_win\\.cpp$")
  list(FILTER win EXCLUDE REGEX "/main_win\\.cpp$") # the program's entry, which tests have, too
  set(${logic_out} ${logic} PARENT_SCOPE)
  set(${win_out} ${win} PARENT_SCOPE)
endfunction()

# tonvista_room(name [lower room]): libraries `name` and, on Windows, `name_win`.
function(tonvista_room name)
  tonvista_split_sources(${name} logic win)
  set(avx ${logic}) # name_avx.cpp is called only where the processor has AVX
  list(FILTER avx INCLUDE REGEX "_avx\\.cpp$")
  set_source_files_properties(${avx} PROPERTIES COMPILE_OPTIONS -mavx)
  if(logic)
    add_library(${name} STATIC ${logic})
    target_compile_options(${name} PRIVATE ${TONVISTA_WARNINGS})
    target_link_libraries(${name} PUBLIC tonvista_options ${ARGN})
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE tonvista_options ${ARGN})
  endif()
  if(NOT WIN32 OR NOT win OR name IN_LIST TONVISTA_DLL_ROOMS)
    return()
  endif()
  add_library(${name}_win STATIC ${win})
  target_compile_options(${name}_win PRIVATE ${TONVISTA_WARNINGS})
  target_link_libraries(${name}_win PUBLIC ${name} ${TONVISTA_SYSTEM_LIBS})
  foreach(lower ${ARGN})
    if(TARGET ${lower}_win)
      target_link_libraries(${name}_win PUBLIC ${lower}_win)
    endif()
  endforeach()
endfunction()

# A DLL of a room's Windows files.
function(tonvista_dll folder target file)
  tonvista_split_sources(${folder} logic win)
  if(win)
    add_library(${target} SHARED ${win})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${file} PREFIX "")
    target_compile_options(${target} PRIVATE ${TONVISTA_WARNINGS})
    target_link_libraries(${target} PRIVATE ${folder} ${ARGN} ${TONVISTA_SYSTEM_LIBS})
    target_link_options(${target} PRIVATE -Wl,--kill-at $<$<CONFIG:Release>:-s>)
  endif()
endfunction()

# The user's manual stands beside the program.
function(tonvista_manual)
  file(GLOB pages CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/docs/manual/*)
  file(READ ${CMAKE_SOURCE_DIR}/app/setup.cpp known) # the files that are installed and removed
  foreach(page ${pages})
    get_filename_component(name ${page} NAME)
    if(NOT known MATCHES "\"${name}\"")
      message(FATAL_ERROR "${name} of the manual is not in kManualFiles of app/setup.cpp")
    endif()
  endforeach()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/app/setup.cpp)
  set(stamp ${CMAKE_BINARY_DIR}/manual.stamp)
  add_custom_command(
    OUTPUT ${stamp} DEPENDS ${pages}
    COMMAND ${CMAKE_COMMAND} -E remove_directory ${CMAKE_BINARY_DIR}/manual
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${CMAKE_SOURCE_DIR}/docs/manual
            ${CMAKE_BINARY_DIR}/manual
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp})
  add_custom_target(manual DEPENDS ${stamp})
  add_dependencies(tonvista manual)
endfunction()

# The program, the disc drive's driver and the media files' extractor.
function(tonvista_program)
  add_executable(tonvista WIN32 ${CMAKE_SOURCE_DIR}/app/main_win.cpp)
  target_compile_options(tonvista PRIVATE ${TONVISTA_WARNINGS})
  target_link_libraries(tonvista PRIVATE resources)
  foreach(room ${TONVISTA_ROOMS})
    if(TARGET ${room}_win)
      target_link_libraries(tonvista PRIVATE ${room}_win)
    endif()
  endforeach()
  target_link_options(tonvista PRIVATE $<$<CONFIG:Release>:-s>)
  tonvista_manual()
  tonvista_dll(discdrive tonvdisc TONVDisc core)
  tonvista_dll(extractor tonvextr TONVExtr core_win)
  if(TARGET tonvextr) # of the waves' Windows files it needs this one alone
    target_sources(tonvextr PRIVATE ${CMAKE_SOURCE_DIR}/waves/fft_choice_win.cpp)
  endif()
endfunction()

# GCC 12 also takes vectors of known size for overrun. In tests that stays off: they run under ASan.
set(TONVISTA_TEST_WARNINGS ${TONVISTA_WARNINGS}
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>)

# One test program a room, so that a fault in one stops no other.
function(tonvista_test target sources)
  add_executable(${target} ${sources})
  target_compile_options(${target} PRIVATE ${TONVISTA_TEST_WARNINGS})
  target_link_libraries(${target} PRIVATE tonvista_options ${ARGN} gtest gtest_main)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  set_property(GLOBAL APPEND PROPERTY TONVISTA_TEST_TARGETS ${target})
endfunction()

function(tonvista_tests)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  foreach(room ${TONVISTA_ROOMS} ${TONVISTA_DLL_ROOMS})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/logic/${room}/*.cpp)
    if(sources)
      tonvista_test(logic_${room} "${sources}" ${room})
    endif()
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/windows/${room}/*.cpp)
    if(WIN32 AND sources)
      if(TARGET ${room}_win)
        set(lib ${room}_win)
      else()
        set(lib ${room} ${TONVISTA_SYSTEM_LIBS})
      endif()
      tonvista_test(windows_${room} "${sources}" ${lib} resources)
      if(room MATCHES "^(cd|discdrive|waves)$" AND TARGET tonvdisc) # they play from it
        target_link_libraries(windows_${room} PRIVATE driver)
        add_dependencies(windows_${room} tonvdisc)
      endif()
      if(room STREQUAL "archive") # its dialogs are driven
        target_link_libraries(windows_${room} PRIVATE driver)
      endif()
      if(room MATCHES "^(media|extractor)$" AND TARGET tonvextr)
        target_link_libraries(windows_${room} PRIVATE driver)
        add_dependencies(windows_${room} tonvextr)
      endif()
    endif()
  endforeach()
  if(WIN32)
    # What drives the real program, for tests and benchmarks alike.
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/*_win.cpp)
    add_library(driver STATIC EXCLUDE_FROM_ALL ${sources})
    target_compile_options(driver PRIVATE ${TONVISTA_WARNINGS})
    target_link_libraries(driver PUBLIC core_win)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/program/*.cpp)
    if(sources)
      tonvista_test(program_tests "${sources}" driver waves cdinfo_win) # what is to show: sounds, discs
      if(TARGET tonvista)
        foreach(part tonvista tonvdisc tonvextr)
        if(TARGET ${part})
          add_dependencies(program_tests ${part})
        endif()
      endforeach()
      endif()
    endif()
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/bench/*.cpp)
    foreach(source ${sources})
      get_filename_component(name ${source} NAME_WE)
      add_executable(bench_${name} EXCLUDE_FROM_ALL ${source})
      target_compile_options(bench_${name} PRIVATE ${TONVISTA_TEST_WARNINGS})
      target_link_libraries(bench_${name} PRIVATE tonvista_options resources driver)
      foreach(room ${TONVISTA_ROOMS})
        if(TARGET ${room}_win)
          target_link_libraries(bench_${name} PRIVATE ${room}_win)
        endif()
      endforeach()
      set_target_properties(bench_${name} PROPERTIES
                            RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)
    endforeach()
  else()
    tonvista_replays()
  endif()
endfunction()

# fuzz/NAME.cpp defines LLVMFuzzerTestOneInput. The fuzz preset links libFuzzer; the native
# preset links a main that replays the seed corpus, as a regression test.
function(tonvista_fuzz_sources out)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/fuzz/*.cpp)
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

function(tonvista_fuzz_targets)
  tonvista_fuzz_sources(sources)
  foreach(source ${sources})
    get_filename_component(name ${source} NAME_WE)
    add_executable(fuzz_${name} ${source})
    target_link_libraries(fuzz_${name} PRIVATE ${TONVISTA_ROOMS} discdrive)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
  endforeach()
endfunction()

function(tonvista_replays)
  tonvista_fuzz_sources(sources)
  foreach(source ${sources})
    get_filename_component(name ${source} NAME_WE)
    add_executable(replay_${name} ${source} ${CMAKE_SOURCE_DIR}/fuzz/replay/replay.cpp)
    target_link_libraries(replay_${name} PRIVATE ${TONVISTA_ROOMS} discdrive)
    set_target_properties(replay_${name} PROPERTIES
                          RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  endforeach()
endfunction()
