# ozna_tidy: clang-tidy with every source that is no test, several at a time; a finding fails it. It is meant for the
# preset tidy, where no precompiled header hides one that a source does not name. Only the generated code that the
# sources include is compiled ahead. On standard error it counts what .clang-tidy leaves out.
cmake_host_system_information(RESULT cores QUERY NUMBER_OF_LOGICAL_CORES)
if(OZNA_PLAYER)
    set(player_sources "'player/*.cpp'")
    set(player_generated ozna_sound_adaptor)
endif()
add_custom_target(ozna_tidy
    COMMAND sh -c "git ls-files 'src/*.cpp' 'platform/*.cpp' 'simulator/*.cpp' 'tools/*.cpp' ${player_sources} | \
        xargs --max-procs=${cores} --max-args=4 clang-tidy -p '${PROJECT_BINARY_DIR}' --quiet 2>/dev/null"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    DEPENDS ozna_proxies ozna_simulator_adaptor ${player_generated}
    USES_TERMINAL VERBATIM)
