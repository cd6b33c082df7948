# tollivar_module(<name>
#     [DEPENDS <module>...]             modules of ours it may include, complete
#     [LIBRARIES <target>...]           outside libraries that its headers may show
#     [PRIVATE_LIBRARIES <target>...]   outside libraries used in sources only
#     HEADERS <file>... SOURCES <file>...)
#
# Declares the static library of the current folder. Each call also adds one line to
# layers.txt in the build folder, which tools/check_layers.py holds every include against.

# Compiles the precompiled headers once for all modules.
file(WRITE ${CMAKE_BINARY_DIR}/generated/precompiled.cpp "")
add_library(tollivar_precompiled OBJECT ${CMAKE_BINARY_DIR}/generated/precompiled.cpp)
target_link_libraries(tollivar_precompiled PRIVATE tollivar_flags Qt6::Core tl::expected Threads::Threads)
target_precompile_headers(tollivar_precompiled PRIVATE ${TOLLIVAR_PRECOMPILED_HEADERS})
# The same for the modules that draw windows.
add_library(tollivar_windows_precompiled OBJECT ${CMAKE_BINARY_DIR}/generated/precompiled.cpp)
target_link_libraries(tollivar_windows_precompiled PRIVATE tollivar_flags Qt6::Widgets tl::expected
                      Threads::Threads)
target_precompile_headers(tollivar_windows_precompiled PRIVATE ${TOLLIVAR_PRECOMPILED_HEADERS}
                          ${TOLLIVAR_PRECOMPILED_WINDOW_HEADERS})

set(TOLLIVAR_LAYERS ${CMAKE_BINARY_DIR}/layers.txt)
file(WRITE ${TOLLIVAR_LAYERS} "")


function(tollivar_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "DEPENDS;LIBRARIES;PRIVATE_LIBRARIES;HEADERS;SOURCES")
    set(target tollivar_${name})
    if(arg_SOURCES)
        add_library(${target} STATIC ${arg_SOURCES} ${arg_HEADERS})
        set(scope PUBLIC)
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
        target_link_libraries(${target} PRIVATE ${arg_PRIVATE_LIBRARIES})
        if("Qt6::Widgets" IN_LIST arg_LIBRARIES)
            target_precompile_headers(${target} REUSE_FROM tollivar_windows_precompiled)
        else()
            target_precompile_headers(${target} REUSE_FROM tollivar_precompiled)
        endif()
    else()
        add_library(${target} INTERFACE)
        set(scope INTERFACE)
    endif()
    add_library(tollivar::${name} ALIAS ${target})
    target_sources(${target} ${scope} FILE_SET HEADERS BASE_DIRS ${CMAKE_SOURCE_DIR} FILES ${arg_HEADERS})
    target_link_libraries(${target} ${scope} tollivar_flags Qt6::Core tl::expected Threads::Threads
                          ${arg_LIBRARIES})
    foreach(dependency IN LISTS arg_DEPENDS)
        target_link_libraries(${target} ${scope} tollivar::${dependency})
    endforeach()
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    list(JOIN arg_DEPENDS "," depends)
    list(JOIN arg_LIBRARIES "," libraries)
    list(JOIN arg_PRIVATE_LIBRARIES "," private_libraries)
    file(APPEND ${TOLLIVAR_LAYERS} "${name}|${folder}|${depends}|${libraries}|${private_libraries}\n")
endfunction()
