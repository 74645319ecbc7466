include(HostHeaders)
orvandel_import_headers(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
