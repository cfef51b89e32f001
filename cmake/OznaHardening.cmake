# What makes a slip in code that parses other people's files an end of the process instead of a way into it. It holds
# for everything that is compiled, generated code included; the tests, which are not optimised, take fortification back.
include(CheckPIESupported)
check_pie_supported(OUTPUT_VARIABLE output LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Programs and libraries share precompiled headers, so both are compiled alike; on some processors Qt asks for this.
add_compile_options(-fPIC)

add_compile_options(-fstack-protector-strong -fstack-clash-protection)
add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)

# Fortification needs an optimised build, and the sanitizers look closer than it does.
string(FIND "${CMAKE_CXX_FLAGS}" -fsanitize sanitizer)
if(sanitizer GREATER_EQUAL 0)
    set(OZNA_SANITIZED TRUE)
else()
    set(OZNA_HARDENED TRUE)
    add_compile_options($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
    # Standard containers check the index they are given.
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()
