include(HeaderOnlyLibrary)
header_only_library(fmt::fmt-header-only fmt)
set_property(TARGET fmt::fmt-header-only PROPERTY INTERFACE_COMPILE_DEFINITIONS FMT_HEADER_ONLY=1)
set(fmt_FOUND TRUE)
