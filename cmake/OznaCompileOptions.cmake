# ozna_options: what every target of ours is compiled with. Generated code links it not.
add_library(ozna_options INTERFACE)

target_compile_options(ozna_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Wold-style-cast
    -Woverloaded-virtual -Wformat=2 -Wundef -Werror)

target_compile_definitions(ozna_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# A 32-bit processor keeps counting after 19 January 2038.
target_compile_definitions(ozna_options INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
