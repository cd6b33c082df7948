# The one place for compiler flags and Qt definitions: every target links tollivar_flags.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(tollivar_flags INTERFACE)
target_include_directories(tollivar_flags INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(tollivar_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
    -Woverloaded-virtual -Wnon-virtual-dtor -Werror)
target_compile_definitions(tollivar_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING QT_NO_FOREACH QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# What people install meets hostile pages: the compiler's and the linker's hardening is on there.
target_compile_options(tollivar_flags INTERFACE
    "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-fstack-protector-strong>")
target_link_options(tollivar_flags INTERFACE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)

if(TOLLIVAR_SANITIZERS)
    target_compile_options(tollivar_flags INTERFACE
        -fsanitize=${TOLLIVAR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tollivar_flags INTERFACE -fsanitize=${TOLLIVAR_SANITIZERS})
endif()
if(TOLLIVAR_FUZZ)
    target_compile_options(tollivar_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The headers nearly every source includes, compiled once for the whole tree.
set(TOLLIVAR_PRECOMPILED_HEADERS
    <QByteArray> <QString> <QStringView>
    <algorithm> <atomic> <chrono> <condition_variable> <cstdint> <functional> <memory> <mutex>
    <optional> <span> <string> <thread> <utility> <variant> <vector>
    <tl/expected.hpp>)
# What nearly every source that draws windows includes beside them.
set(TOLLIVAR_PRECOMPILED_WINDOW_HEADERS
    <QApplication> <QBoxLayout> <QEvent> <QHash> <QMouseEvent> <QPainter> <QPointer> <QToolButton>
    <QWidget>)
