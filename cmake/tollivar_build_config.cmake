# Values that belong to the build, each a cache variable so that a distributor can change it.

set(TOLLIVAR_HOME_PAGE "https://tollivar.example/" CACHE STRING "Vendor's home page")
set(TOLLIVAR_UPDATE_ADDRESS "https://update.tollivar.example/check" CACHE STRING
    "Address that is asked for newer releases")
set(TOLLIVAR_DOWNLOAD_PAGE "https://tollivar.example/download" CACHE STRING
    "Page that offers a newer release when the answer names none")
set(TOLLIVAR_FLASH_PAGE "https://tollivar.example/flash" CACHE STRING
    "Page that explains how to get the flash player")
set(TOLLIVAR_HELP_PAGE "https://tollivar.example/help" CACHE STRING "Help page")
set(TOLLIVAR_VIDEO_SITE "youtube.com" CACHE STRING "Domain of the video-sharing site")
set(TOLLIVAR_EXAMPLE_VIDEO "dQw4w9WgXcQ" CACHE STRING
    "Video shown in the message about an invalid address")
set(TOLLIVAR_BROADCASTER_1 "broadcaster-one.example" CACHE STRING
    "First domain whose titles lose their number prefix")
set(TOLLIVAR_BROADCASTER_2 "broadcaster-two.example" CACHE STRING
    "Second domain whose titles lose their number prefix")

set(TOLLIVAR_APPLICATION_ID "io.github.tollivar.Tollivar" CACHE STRING
    "Reverse-DNS name of the desktop file and the icons")

# What the about dialog tells: name, version and licence of each library.
set(TOLLIVAR_LIBRARIES "")
function(tollivar_library name version licence)
    string(REGEX REPLACE "^v" "" version "${version}")
    string(APPEND TOLLIVAR_LIBRARIES
        "    {QLatin1StringView{\"${name}\"}, QLatin1StringView{\"${version}\"},\n"
        "     QLatin1StringView{\"${licence}\"}},\n")
    set(TOLLIVAR_LIBRARIES "${TOLLIVAR_LIBRARIES}" PARENT_SCOPE)
endfunction()
tollivar_library(Qt "${Qt6_VERSION}" "LGPL 3")
tollivar_library(SQLite "${SQLITE_VERSION}" "public domain")
tollivar_library(libcurl "${CURL_VERSION}" "curl")
tollivar_library(librtmp "${RTMP_VERSION}" "LGPL 2.1")
tollivar_library(libzip "${ZIP_VERSION}" "BSD")
tollivar_library(libcanberra "${CANBERRA_VERSION}" "LGPL 2.1")
tollivar_library(libxcb "${XCB_VERSION}" "MIT")
if(MPV_VERSION)
    tollivar_library(libmpv "${MPV_VERSION}" "GPL 2")
endif()

configure_file(${CMAKE_SOURCE_DIR}/platform/build_config.h.in
               ${CMAKE_BINARY_DIR}/generated/platform/build_config.h @ONLY)
target_include_directories(tollivar_flags INTERFACE ${CMAKE_BINARY_DIR}/generated)
