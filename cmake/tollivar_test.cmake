# tollivar_test(<module>
#     [PURE <source>...]        cases that touch no file, thread, process or socket
#     [PART <source>...]        cases on one real part: database, server, browser, child process
#     [WHOLE <source>...]       cases that run the built programs
#     [LIBRARIES <target>...]   what they link beside the module and the test support
#     [WINDOWS])                they draw windows: they run under a QApplication, off the screen
#
# One executable per size, so that the quick cases start without the slow ones' libraries;
# every case is a CTest entry of its own, labelled with its size and its module.

function(tollivar_test module)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WINDOWS" "" "PURE;PART;WHOLE;LIBRARIES")
    set(timeout_PURE 60)
    set(timeout_PART 120)
    set(timeout_WHOLE 300)
    foreach(size PURE PART WHOLE)
        if(NOT arg_${size})
            continue()
        endif()
        string(TOLOWER ${size} label)
        set(target ${module}_${label}_test)
        if(arg_WINDOWS)
            set(support test_support_windows)
            add_executable(${target} ${arg_${size}} ${CMAKE_SOURCE_DIR}/tests/support/windows_main.cpp)
        else()
            set(support test_support)
            add_executable(${target} ${arg_${size}} ${CMAKE_SOURCE_DIR}/tests/support/main.cpp)
        endif()
        set_target_properties(${target} PROPERTIES
            AUTOMOC ON
            RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
        target_link_libraries(${target} PRIVATE tollivar::${support} ${arg_LIBRARIES})
        if(TARGET tollivar::${module})
            target_link_libraries(${target} PRIVATE tollivar::${module})
        endif()
        target_precompile_headers(${target} REUSE_FROM tollivar_${support})
        gtest_discover_tests(${target}
            DISCOVERY_MODE PRE_TEST
            PROPERTIES TIMEOUT ${timeout_${size}})
        # Discovery takes lists apart, so the two labels follow it.
        set(labels ${CMAKE_CURRENT_BINARY_DIR}/${target}_labels.cmake)
        file(WRITE ${labels}
            "if(${target}_TESTS)\n"
            "    set_tests_properties(\${${target}_TESTS} PROPERTIES LABELS \"${label};${module}\")\n"
            "endif()\n")
        set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${labels})
    endforeach()
endfunction()
