#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayStream.h"

#include <Configuration.h>

#include <QSettings>

using namespace Qt::StringLiterals;

// Takes the place of the device's configuration library: what is asked of it, and answers that a file cannot give.

namespace
{

QStringList m_asked;
bool m_isValid = true;
bool m_isFound = true;

} // namespace

Configuration::Configuration(const char* objectPath)
{
    m_asked.append(QString::fromLatin1(objectPath));
}

Configuration::~Configuration() = default;

bool Configuration::IsValid() const
{
    m_asked.append(u"IsValid"_s);
    return m_isValid;
}

QString Configuration::ReadConfigValue(const QString& group, const QString& key, const QString& defaultValue, bool* ok,
                                       bool useDefault)
{
    m_asked.append(u"%1 %2 %3 %4"_s.arg(group, key, defaultValue).arg(useDefault));
    *ok = m_isFound;
    return u"10.0.0.5"_s;
}

class ConfigurationReadingTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AStreamAsksForTheServer_data();
    void AStreamAsksForTheServer();
};

void ConfigurationReadingTest::AStreamAsksForTheServer_data()
{
    Rows<bool, bool, LogLine>::Add({
        {"found", true, true, LogLine("5 [tasks/PlayStream.cpp] PlayStream setup done: uri=rtsp://10.0.0.5:8554/live")},
        // A value that comes back all the same is not used.
        {"not found", true, false,
         LogLine("1 [tasks/PlayStream.cpp] PlayStream setup error: impossible to retrieve "
                 "server ip (value missing)")},
        {"not valid", false, true,
         LogLine("1 [tasks/PlayStream.cpp] PlayStream setup error: impossible to retrieve "
                 "server ip (config not valid)")},
    });
}

void ConfigurationReadingTest::AStreamAsksForTheServer()
{
    const auto& [isValid, isFound, log] = Rows<bool, bool, LogLine>::Current();
    m_isValid = isValid;
    m_isFound = isFound;
    PlayStream task(u"8554/live"_s, u"-1"_s);
    LogRecorder::Clear();
    m_asked.clear();
    QCOMPARE(task.Run(), isValid && isFound);
    EXPECT_LOG(5, {log});
    QStringList asked{u"/com/kestrelix/ozna/scheduler/schedulerobj"_s, u"IsValid"_s};
    if (isValid)
        asked.append(u"GENERAL ServerIp 127.0.0.1 1"_s);
    QCOMPARE(m_asked, asked);
}

OZNA_CASE(ConfigurationReading, ConfigurationReadingTest)
#include "tst_ConfigurationReading.moc"
