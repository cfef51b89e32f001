#include "FakeTime.h"

#include "BuiltProgram.h"

#include <atomic>

using namespace Qt::StringLiterals;

FakeTime::FakeTime()
    : m_file(m_folder.filePath(u"offset"_s))
{
    if (m_file.open(QIODevice::ReadWrite) && m_file.resize(sizeof(*m_offset_ms)))
        m_offset_ms = reinterpret_cast<qint64*>(m_file.map(0, sizeof(*m_offset_ms)));
    if (!m_offset_ms)
        qFatal("cannot share the clock offset: %s", qPrintable(m_file.errorString()));
}

void FakeTime::Set(const QDateTime& now)
{
    std::atomic_ref(*m_offset_ms).store(QDateTime::currentDateTimeUtc().msecsTo(now));
}

QDateTime FakeTime::Now() const
{
    return QDateTime::currentDateTimeUtc().addMSecs(*m_offset_ms);
}

void FakeTime::Apply(QProcessEnvironment& environment) const
{
    environment.insert(u"LD_PRELOAD"_s, BuiltProgram::Path(u"tests/support/clock/libozna_shifted_clock.so"_s));
    environment.insert(u"OZNA_CLOCK_OFFSET_FILE"_s, m_file.fileName());
}
