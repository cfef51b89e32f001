#include "FakeTime.h"

#include <QSaveFile>

namespace
{
const QString OFFSET_FILE = QStringLiteral("offset");
}

void FakeTime::Set(const QDateTime& now)
{
    m_offset_ms = QDateTime::currentDateTimeUtc().msecsTo(now);
    // Replaced as a whole: a process may read it at any moment.
    QSaveFile file(m_folder.filePath(OFFSET_FILE));
    const QByteArray offset = QByteArray::number(static_cast<double>(m_offset_ms) / 1000.0, 'f', 3);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_offset_ms < 0 ? offset : '+' + offset) < 0 || !file.commit())
        qFatal("cannot write the clock offset: %s", qPrintable(file.errorString()));
}

QDateTime FakeTime::Now() const
{
    return QDateTime::currentDateTimeUtc().addMSecs(m_offset_ms);
}

void FakeTime::Apply(QProcessEnvironment& environment) const
{
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(OZNA_LIBFAKETIME));
    environment.insert(QStringLiteral("FAKETIME_TIMESTAMP_FILE"), m_folder.filePath(OFFSET_FILE));
    environment.insert(QStringLiteral("FAKETIME_NO_CACHE"), QStringLiteral("1"));
    environment.insert(QStringLiteral("FAKETIME_DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
    environment.insert(QStringLiteral("DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
}
