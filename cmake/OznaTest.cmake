# Every time zone is a file of the system's: a test under one that is missing would silently run in UTC.
set(OZNA_ZONEINFO_DIR /usr/share/zoneinfo CACHE PATH "Folder of the time-zone files that tests are run under")

# Half the time of building a test would go into optimising it.
set(OZNA_TEST_OPTIONS $<$<CONFIG:RelWithDebInfo>:-O0> $<$<CONFIG:RelWithDebInfo>:-g0> -U_FORTIFY_SOURCE)

ozna_add_precompiled_headers(ozna_test_headers
    OPTIONS ${OZNA_TEST_OPTIONS} LIBRARIES Qt6::Test HEADERS <QTest> <algorithm>)

# ozna_compile_as_test(<target>): what suites are compiled of, and what only they link.
function(ozna_compile_as_test target)
    target_compile_options(${target} PRIVATE ${OZNA_TEST_OPTIONS})
    target_precompile_headers(${target} REUSE_FROM ozna_test_headers)
endfunction()

# What is built for the device's processor, see the preset armhf.
add_custom_target(ozna_device_tests)

# ozna_add_suite(<suite> [SOURCES <file>...] [LIBRARIES <library>...] [LINK_OPTIONS <option>...]
#                [DEPENDS <target>...] [DEVICE])
#
# Makes the test program suite_<suite> in the folder tests of the build tree: cases that are linked with the same
# libraries. SOURCES are what several of its cases share. DEPENDS are programs that its cases start. With DEVICE the
# suite is built by the target ozna_device_tests, and its cases carry the label "device" as well: they hold on the
# device's processor too.
function(ozna_add_suite suite)
    cmake_parse_arguments(PARSE_ARGV 1 suite "DEVICE" "" "SOURCES;LIBRARIES;LINK_OPTIONS;DEPENDS")
    if(suite_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "ozna_add_suite(${suite}): ${suite_UNPARSED_ARGUMENTS}")
    endif()
    set(program suite_${suite})
    add_executable(${program} ${suite_SOURCES})
    target_link_libraries(${program} PRIVATE ozna_suite ozna_options ${suite_LIBRARIES})
    target_link_options(${program} PRIVATE ${suite_LINK_OPTIONS})
    ozna_compile_as_test(${program})
    # Nobody steps through the libraries here: without their debug information a program is a tenth of its size.
    target_link_options(${program} PRIVATE $<$<CONFIG:RelWithDebInfo>:LINKER:-S>)
    # The source that the meta-object compiler's output goes into is empty where no header of a suite has such a class.
    if(NOT suite_SOURCES MATCHES "\\.h(;|$)")
        set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${program}_autogen/mocs_compilation.cpp
            PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
    set_target_properties(${program} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests
        OZNA_DEVICE ${suite_DEVICE})
    if(suite_DEPENDS)
        add_dependencies(${program} ${suite_DEPENDS})
    endif()
    if(suite_DEVICE)
        add_dependencies(ozna_device_tests ${program})
    endif()
    set_property(GLOBAL APPEND PROPERTY OZNA_SUITES ${program})
endfunction()

# ozna_add_case(<label>.<name> SUITE <suite> [SOURCES <file>...] [DEFINITIONS <definition>...] [NAMED <case>]
#               [ENVIRONMENT <variable=value>...] [TIME_ZONES <zone>...] [ROWS <function> <row>...]
#               [FUNCTIONS <function>...] [TIMEOUT <seconds>] [PROPERTIES <property> <value>...])
#
# Adds the test class that tst_<name>.cpp declares to be the case <name> (tests/support/Suite.h), and SOURCES which only
# that case uses, to the suite, and registers it as "<label>.<name>": a process of its own. With TIME_ZONES it is
# registered once a zone as "<label>.<name>.<zone>" with the zone's "/" as "_". With ROWS, each row of that test function,
# which has to be the case's only one, is registered by itself as "<label>.<name>.<row>", so that rows which wait for
# long wait side by side. With FUNCTIONS, each of its test functions is, as "<label>.<name>.<function>"; none may be left
# out of either. DEFINITIONS hold for tst_<name>.cpp, PROPERTIES are those of the registered tests. With NAMED
# the test is a case of that name which the suite has already, and no source is added. No test reaches the session bus of
# who runs it, sees the settings of who runs it, or runs longer than its time-out, which only ends what
# hangs (300 seconds unless given): an emulated processor with other builds beside it needs its time.
function(ozna_add_case label_and_name)
    cmake_parse_arguments(PARSE_ARGV 1 case ""
        "SUITE;TIMEOUT;NAMED" "SOURCES;DEFINITIONS;ENVIRONMENT;TIME_ZONES;ROWS;FUNCTIONS;PROPERTIES")
    if(NOT label_and_name MATCHES "^([a-z]+)\\.([A-Za-z0-9]+)$" OR NOT TARGET suite_${case_SUITE}
       OR case_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR
            "ozna_add_case(${label_and_name}): <label>.<name> and a SUITE are needed; ${case_UNPARSED_ARGUMENTS}")
    endif()
    set(labels ${CMAKE_MATCH_1})
    set(name ${CMAKE_MATCH_2})
    set(program suite_${case_SUITE})
    if(NOT case_TIMEOUT)
        set(case_TIMEOUT 300)
    endif()

    if(case_NAMED)
        set(name ${case_NAMED})
    else()
        set(source ${CMAKE_CURRENT_SOURCE_DIR}/tst_${name}.cpp)
        target_sources(${program} PRIVATE ${source} ${case_SOURCES})
        set_property(SOURCE ${source} TARGET_DIRECTORY ${program} APPEND PROPERTY
            COMPILE_DEFINITIONS ${case_DEFINITIONS})
    endif()

    get_target_property(is_for_device ${program} OZNA_DEVICE)
    if(is_for_device)
        list(APPEND labels device)
    endif()

    list(POP_FRONT case_ROWS function)
    list(TRANSFORM case_ROWS PREPEND "${function}:")
    set(parts ${case_ROWS} ${case_FUNCTIONS})
    ozna_register_case(${label_and_name} ${program} ${name} "${case_TIME_ZONES}" "${parts}")
    set_property(TEST ${registered} APPEND PROPERTY ENVIRONMENT
        DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
        LC_ALL=C.UTF-8
        LLVM_PROFILE_FILE=${OZNA_PROFILE_DIR}/${program}-%m.profraw
        ${case_ENVIRONMENT})
    set_property(TEST ${registered} APPEND PROPERTY ENVIRONMENT_MODIFICATION
        JOURNAL_STREAM=unset: NOTIFY_SOCKET=unset: OZNA_CONFIG_FILE=unset: OZNA_DATA_DIR=unset: OZNA_LOG_LEVEL=unset:
        QT_LOGGING_CONF=unset: QT_LOGGING_RULES=unset: QT_MESSAGE_PATTERN=unset: QTEST_FUNCTION_TIMEOUT=unset:)
    set_tests_properties(${registered} PROPERTIES LABELS "${labels}" TIMEOUT ${case_TIMEOUT} ${case_PROPERTIES})
endfunction()

# Registers a case with CTest, once a time zone, or once a part of it where there are some: functions, or rows as
# <function>:<row>. The names of the tests go to registered.
function(ozna_register_case label_and_name program name zones parts)
    set(registered)
    foreach(zone IN LISTS zones)
        if(NOT EXISTS ${OZNA_ZONEINFO_DIR}/${zone})
            message(FATAL_ERROR "ozna_add_case(${label_and_name}): no time zone ${zone} in ${OZNA_ZONEINFO_DIR}")
        endif()
        string(REPLACE "/" "_" suffix ${zone})
        set(test ${label_and_name}.${suffix})
        add_test(NAME ${test} COMMAND ${program} ${name})
        set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT TZ=${zone})
        list(APPEND registered ${test})
    endforeach()
    foreach(part IN LISTS parts)
        string(REGEX REPLACE "^.*:" "" suffix ${part})
        set(test ${label_and_name}.${suffix})
        add_test(NAME ${test} COMMAND ${program} ${name} ${part})
        list(APPEND registered ${test})
    endforeach()
    if(NOT registered)
        set(registered ${label_and_name})
        add_test(NAME ${registered} COMMAND ${program} ${name})
    endif()
    set(registered ${registered} PARENT_SCOPE)
endfunction()
