include(HostHeaders)
orvandel_import_headers(fmt::fmt-header-only fmt DEFINE FMT_HEADER_ONLY=1)
set(fmt_FOUND TRUE)
