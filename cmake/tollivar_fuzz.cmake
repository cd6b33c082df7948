# tollivar_fuzz(<name> <source> LIBRARIES <target>...)
#
# A libFuzzer target over tests/fuzz/corpus/<name>. Under CTest it replays the corpus and then
# fuzzes for a few seconds; by hand it runs as long as one likes.

function(tollivar_fuzz name source)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "LIBRARIES")
    set(target fuzz_${name})
    add_executable(${target} ${source})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
    target_link_libraries(${target} PRIVATE tollivar_flags ${arg_LIBRARIES})
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    set(findings ${CMAKE_BINARY_DIR}/fuzz/findings/${name})
    file(MAKE_DIRECTORY ${findings})
    add_test(NAME Fuzz.${name}
        COMMAND ${target} -max_total_time=5 -timeout=10 -rss_limit_mb=2048 -max_len=65536
                -artifact_prefix=${findings}/ ${findings} ${CMAKE_SOURCE_DIR}/tests/fuzz/corpus/${name})
    set_tests_properties(Fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 120)
endfunction()
