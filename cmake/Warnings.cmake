# inkloom_warnings: linked privately by every target of ours.
add_library(inkloom_warnings INTERFACE)
target_compile_options(inkloom_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
