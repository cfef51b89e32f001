# ozna_tidy: clang-tidy with every source that is no test; a finding fails it. It is meant for the preset tidy, where no
# precompiled header hides one that a source does not name. Only the generated code that the sources include is compiled
# ahead.
find_package(Python3 3.9 COMPONENTS Interpreter)
if(OZNA_PLAYER)
    set(player_sources "'player/*.cpp'")
    set(player_generated ozna_sound_adaptor)
endif()
add_custom_target(ozna_tidy
    COMMAND sh -c "git ls-files 'src/*.cpp' 'platform/*.cpp' 'simulator/*.cpp' 'tools/*.cpp' ${player_sources} | \
        xargs '${Python3_EXECUTABLE}' -B '${CMAKE_CURRENT_LIST_DIR}/tidy-together' '${PROJECT_BINARY_DIR}'"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    DEPENDS ozna_proxies ozna_simulator_adaptor ${player_generated}
    USES_TERMINAL VERBATIM)
