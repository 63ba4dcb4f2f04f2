include(HeaderOnlyLibrary)
header_only_library(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
