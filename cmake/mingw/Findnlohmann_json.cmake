include(HostHeaders)
orvandel_import_headers(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
