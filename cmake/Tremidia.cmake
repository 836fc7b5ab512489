# Shared helpers for the project's CMake files.

# tremidia_add_test(NAME name SOURCES a.cpp ... LIBS lib ... [GUI] [XVFB] [SLOW_UNWIND] [TIMEOUT s]
#                   [LABELS l ...])
# One Qt Test executable per class or window. GUI tests run on the offscreen platform;
# XVFB tests run on a virtual X display of their own, for what only a real window
# system shows (window titles, screenshots of other programs). SLOW_UNWIND: under the
# sanitizers, full allocation stacks, so that leaks deep in a system library can be told.
# A GUI or XVFB test is registered twice: NAME, and NAME_reversed with the label `reversed`.
function(tremidia_add_test)
    cmake_parse_arguments(T "GUI;XVFB;SLOW_UNWIND" "NAME;TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    target_link_libraries(${T_NAME} PRIVATE Qt6::Test ${T_LIBS})
    tremidia_use_test_main(${T_NAME})
    set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/bin)
    # Any test may open a Jet file, which the reader program reads.
    if(TARGET tremidia-jet-reader)
        add_dependencies(${T_NAME} tremidia-jet-reader)
    endif()
    target_compile_definitions(${T_NAME} PRIVATE
        TREMIDIA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        TREMIDIA_FIXTURES_DIR="${PROJECT_SOURCE_DIR}/tests/data/jet"
        TREMIDIA_BINARY_DIR="${CMAKE_BINARY_DIR}"
        TREMIDIA_TEST_OUTPUT_DIR="${CMAKE_BINARY_DIR}/test-output")
    if(T_XVFB)
        set(command xvfb-run -a -s "-screen 0 1024x768x24" $<TARGET_FILE:${T_NAME}>)
        set(env "QT_QPA_PLATFORM=xcb;LC_ALL=C.UTF-8;XDG_RUNTIME_DIR=${CMAKE_BINARY_DIR}/test-runtime;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/test-state")
    else()
        set(command ${T_NAME})
        set(env "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_RUNTIME_DIR=${CMAKE_BINARY_DIR}/test-runtime;XDG_STATE_HOME=${CMAKE_BINARY_DIR}/test-state")
    endif()
    # Sound plays into nothing, in time, whatever the machine's sound server.
    list(APPEND env "TREMIDIA_AUDIO_SINK=fakesink sync=true")
    if(TREMIDIA_SANITIZE)
        # Leaks of the system libraries below Qt are not ours to mend; they are listed in
        # one file, and tests that meet them take the slower unwinding that names them.
        list(APPEND env "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/sanitize/lsan.supp:print_suppressions=0")
        if(T_SLOW_UNWIND)
            list(APPEND env "ASAN_OPTIONS=fast_unwind_on_malloc=0")
        endif()
        # Every allocation traced, a sound font takes longer to load than the media
        # player's 5 s for a file to open.
        list(APPEND env "TREMIDIA_MEDIA_LOAD_LIMIT_MS=60000")
    endif()
    if(NOT T_TIMEOUT)
        set(T_TIMEOUT 300)
    endif()
    add_test(NAME ${T_NAME} COMMAND ${command})
    set_tests_properties(${T_NAME} PROPERTIES ENVIRONMENT "${env}" TIMEOUT ${T_TIMEOUT})
    if(T_LABELS)
        set_tests_properties(${T_NAME} PROPERTIES LABELS "${T_LABELS}")
    endif()
    # A test with windows runs a second time with its functions last to first
    # (tests/support/testmain.cpp), labelled `reversed`: a function that passes only
    # after another one left some state behind fails there. The two never run at once,
    # since a test's files outside its temporary folders are the same for both.
    if(T_GUI OR T_XVFB)
        set(labels ${T_LABELS} reversed)
        add_test(NAME ${T_NAME}_reversed COMMAND ${command})
        set_tests_properties(${T_NAME}_reversed PROPERTIES
            ENVIRONMENT "${env};TREMIDIA_TEST_ORDER=reverse" TIMEOUT ${T_TIMEOUT} LABELS "${labels}"
            RESOURCE_LOCK ${T_NAME})
        set_tests_properties(${T_NAME} PROPERTIES RESOURCE_LOCK ${T_NAME})
    endif()
endfunction()

# tremidia_use_test_main(target)
# The test's QTest::qExec runs through tests/support/testmain.cpp: an exception that
# escapes a test function fails that function instead of aborting the executable. The
# linker's --wrap does it, so the tests' own QTEST_MAIN stays as Qt writes it.
function(tremidia_use_test_main target)
    if(NOT TARGET tremidia_testmain)
        add_library(tremidia_testmain OBJECT ${PROJECT_SOURCE_DIR}/tests/support/testmain.cpp)
        target_link_libraries(tremidia_testmain PRIVATE Qt6::Test)
        set_target_properties(tremidia_testmain PROPERTIES AUTOMOC OFF)
    endif()
    target_link_libraries(${target} PRIVATE tremidia_testmain
        "-Wl,--wrap=_ZN5QTest5qExecEP7QObjectiPPc")
endfunction()

# tremidia_add_bench(NAME name SOURCES a.cpp ... LIBS lib ...)
# Benchmarks print their figures; they are built with the project but not run by ctest.
function(tremidia_add_bench)
    cmake_parse_arguments(B "" "NAME" "SOURCES;LIBS" ${ARGN})
    add_executable(${B_NAME} ${B_SOURCES})
    target_link_libraries(${B_NAME} PRIVATE Qt6::Test ${B_LIBS})
    set_target_properties(${B_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench/bin)
    if(TARGET tremidia-jet-reader)
        add_dependencies(${B_NAME} tremidia-jet-reader)
    endif()
    target_compile_definitions(${B_NAME} PRIVATE
        TREMIDIA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        TREMIDIA_FIXTURES_DIR="${PROJECT_SOURCE_DIR}/tests/data/jet"
        TREMIDIA_BINARY_DIR="${CMAKE_BINARY_DIR}")
endfunction()

# Adds every direct subfolder of the current source folder that has a CMakeLists.txt,
# so that each area can keep its own list without touching a shared file.
function(tremidia_add_subfolders)
    file(GLOB children LIST_DIRECTORIES true RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*)
    list(SORT children)
    foreach(child ${children})
        if(IS_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/${child} AND EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/${child}/CMakeLists.txt)
            add_subdirectory(${child})
        endif()
    endforeach()
endfunction()
