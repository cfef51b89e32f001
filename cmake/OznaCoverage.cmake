# With OZNA_COVERAGE, the daemon's own sources count which of their lines run, in tests that link them and in its
# processes alike; tests/coverage/report adds up what they leave in OZNA_PROFILE_DIR. Needs clang.
option(OZNA_COVERAGE "Count which lines of src run" OFF)
set(OZNA_PROFILE_DIR ${PROJECT_BINARY_DIR}/profile)

add_library(ozna_coverage INTERFACE)
if(OZNA_COVERAGE)
    target_compile_options(ozna_coverage INTERFACE -fprofile-instr-generate -fcoverage-mapping)
    # A program that only links one of the counting libraries has to write its counts, too.
    add_link_options(-fprofile-instr-generate)
endif()
