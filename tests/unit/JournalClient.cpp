#include "JournalClient.h"

#include <sys/stat.h>

JournalClient::JournalClient()
    : m_channel(QStringLiteral("socket"))
    , m_redirected(m_channel.Writer())
{
    qputenv(STREAM_VARIABLE, StreamName(m_channel.Writer()));
    if (!qEnvironmentVariableIsSet(LEVEL_VARIABLE))
        qputenv(LEVEL_VARIABLE, "100");
    m_client.emplace(QStringLiteral("/client"));
}

JournalClient::~JournalClient()
{
    qunsetenv(STREAM_VARIABLE);
    qunsetenv(LEVEL_VARIABLE);
}

void JournalClient::Log(unsigned int level, const QByteArray& text, const char* origin)
{
    m_client->EmitLogString(level, text.constData(), origin);
}

QByteArray JournalClient::StreamName(int descriptor, unsigned int otherDevice, unsigned int otherInode)
{
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0)
        qFatal("no file behind descriptor %d", descriptor);
    return QByteArray::number(qulonglong{status.st_dev} + otherDevice) + ':' +
           QByteArray::number(qulonglong{status.st_ino} + otherInode);
}

JournalSocket::Entry JournalClient::EntryOf(const QByteArray& level, const QByteArray& priority, const QByteArray& text)
{
    return {{"PRIORITY", priority},
            {"SYSLOG_IDENTIFIER", "suite_journal"},
            {"OZNA_LEVEL", level},
            {"OZNA_ORIGIN", LogSum::ORIGIN},
            {"MESSAGE", text}};
}
