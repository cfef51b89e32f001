# Every time zone is a file of the system's: a test under one that is missing would silently run in UTC.
set(OZNA_ZONEINFO_DIR /usr/share/zoneinfo CACHE PATH "Folder of the time-zone files that tests are run under")

# Half the time of building a test would go into optimising it.
set(OZNA_TEST_OPTIONS $<$<CONFIG:RelWithDebInfo>:-O0> $<$<CONFIG:RelWithDebInfo>:-g0> -U_FORTIFY_SOURCE)

# All test programs share one set of precompiled headers.
file(CONFIGURE OUTPUT ozna_test_headers.cpp CONTENT "int main() {}\n")
add_executable(ozna_test_headers EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/ozna_test_headers.cpp)
target_link_libraries(ozna_test_headers PRIVATE Qt6::DBus ozna_options)
target_compile_options(ozna_test_headers PRIVATE ${OZNA_TEST_OPTIONS})
target_precompile_headers(ozna_test_headers PRIVATE ${OZNA_PRECOMPILED_HEADERS})

# What is built for the device's processor, see the preset armhf.
add_custom_target(ozna_device_tests)

# ozna_add_test(<name> LABEL <label> SOURCES <file>...
#               [LIBRARIES <library>...] [LINK_OPTIONS <option>...] [DEFINITIONS <definition>...]
#               [ENVIRONMENT <variable=value>...] [TIME_ZONES <zone>...] [ROWS <function> <row>...]
#               [TIMEOUT <seconds>] [DEVICE])
#
# Makes the test program tst_<name> in the folder tests of the build tree and registers it as "<label>.<name>", or,
# with TIME_ZONES, once a zone as "<label>.<name>.<zone>" with the zone's "/" as "_". With ROWS, each row of that test
# function, which has to be the program's only one, is registered by itself as "<label>.<name>.<row>", so that rows
# which wait for long wait side by side. With DEVICE the test carries the label "device" as well, and is built by the target
# ozna_device_tests: it holds on the device's processor too. No test reaches the session
# bus of who runs it, sees the settings of who runs it, or runs longer than its time-out (60 seconds unless given).
function(ozna_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 test "DEVICE"
        "LABEL;TIMEOUT" "SOURCES;LIBRARIES;LINK_OPTIONS;DEFINITIONS;ENVIRONMENT;TIME_ZONES;ROWS")
    if(NOT test_LABEL OR NOT test_SOURCES OR test_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "ozna_add_test(${name}): LABEL and SOURCES are needed; ${test_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT test_TIMEOUT)
        set(test_TIMEOUT 60)
    endif()

    set(program tst_${name})
    add_executable(${program} ${test_SOURCES})
    target_link_libraries(${program} PRIVATE Qt6::Test ozna_options ${test_LIBRARIES})
    target_link_options(${program} PRIVATE ${test_LINK_OPTIONS})
    target_compile_options(${program} PRIVATE ${OZNA_TEST_OPTIONS})
    target_precompile_headers(${program} REUSE_FROM ozna_test_headers)
    target_compile_definitions(${program} PRIVATE ${test_DEFINITIONS})
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)

    set(labels ${test_LABEL})
    if(test_DEVICE)
        list(APPEND labels device)
        add_dependencies(ozna_device_tests ${program})
    endif()

    set(registered)
    foreach(zone IN LISTS test_TIME_ZONES)
        if(NOT EXISTS ${OZNA_ZONEINFO_DIR}/${zone})
            message(FATAL_ERROR "ozna_add_test(${name}): no time zone ${zone} in ${OZNA_ZONEINFO_DIR}")
        endif()
        string(REPLACE "/" "_" suffix ${zone})
        set(case ${test_LABEL}.${name}.${suffix})
        add_test(NAME ${case} COMMAND ${program})
        set_property(TEST ${case} APPEND PROPERTY ENVIRONMENT TZ=${zone})
        list(APPEND registered ${case})
    endforeach()
    list(POP_FRONT test_ROWS function)
    foreach(row IN LISTS test_ROWS)
        set(case ${test_LABEL}.${name}.${row})
        add_test(NAME ${case} COMMAND ${program} ${function}:${row})
        list(APPEND registered ${case})
    endforeach()
    if(NOT registered)
        set(registered ${test_LABEL}.${name})
        add_test(NAME ${registered} COMMAND ${program})
    endif()

    set_property(TEST ${registered} APPEND PROPERTY ENVIRONMENT
        DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
        LC_ALL=C.UTF-8
        LLVM_PROFILE_FILE=${OZNA_PROFILE_DIR}/%m.profraw
        ${test_ENVIRONMENT})
    set_property(TEST ${registered} APPEND PROPERTY ENVIRONMENT_MODIFICATION
        OZNA_CONFIG_FILE=unset: OZNA_DATA_DIR=unset: OZNA_LOG_LEVEL=unset:
        QT_LOGGING_CONF=unset: QT_LOGGING_RULES=unset: QT_MESSAGE_PATTERN=unset: QTEST_FUNCTION_TIMEOUT=unset:)
    set_tests_properties(${registered} PROPERTIES LABELS "${labels}" TIMEOUT ${test_TIMEOUT})
endfunction()
