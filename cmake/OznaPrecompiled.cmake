# Half of the time of a build would go into reading the library's headers again for each of some hundred sources. These
# are the ones that most of them read; all of the library's core would take longer to load than it saves. Each source
# still names what it uses: clang-tidy compiles it without these.
set(OZNA_PRECOMPILED_HEADERS
    <QByteArray> <QByteArrayList> <QDateTime> <QDir> <QFile> <QHash> <QList> <QMap> <QObject> <QString> <QStringList>
    <QTimer> <QVariant> <QDBusConnection> <QDBusMessage> <QDBusReply> <functional> <memory> <optional> <vector>)

# ozna_add_precompiled_headers(<name> [OPTIONS <option>...] [LIBRARIES <library>...] [HEADERS <header>...])
#
# Makes a target that others may share the headers of, further HEADERS among them, if they are compiled with the same
# options: target_precompile_headers(<target> REUSE_FROM <name>).
function(ozna_add_precompiled_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 shared "" "" "OPTIONS;LIBRARIES;HEADERS")
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "// Nothing but the headers.\n")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${source})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
    target_link_libraries(${name} PRIVATE Qt6::DBus ozna_options ${shared_LIBRARIES})
    target_compile_options(${name} PRIVATE ${shared_OPTIONS})
    target_precompile_headers(${name} PRIVATE ${OZNA_PRECOMPILED_HEADERS} ${shared_HEADERS})
endfunction()

ozna_add_precompiled_headers(ozna_headers)
