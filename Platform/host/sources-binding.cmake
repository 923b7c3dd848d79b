# The platform's symbols, exported.
target_sources(mox_host PRIVATE)
