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

configure_file(${CMAKE_SOURCE_DIR}/platform/build_config.h.in
               ${CMAKE_BINARY_DIR}/generated/platform/build_config.h @ONLY)
target_include_directories(tollivar_flags INTERFACE ${CMAKE_BINARY_DIR}/generated)
