include(HeaderOnlyLibrary)
header_only_library(tomlplusplus::tomlplusplus toml++)
set(tomlplusplus_FOUND TRUE)
