include(HeaderOnlyLibrary)
header_only_library(spdlog::spdlog_header_only spdlog)
set(spdlog_FOUND TRUE)
