include(HeaderOnlyLibrary)
header_only_library(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
