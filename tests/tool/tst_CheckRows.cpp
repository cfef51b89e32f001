#include "CheckRun.h"
#include "CommandCall.h"
#include "Suite.h"

#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString SCHEDULE = u"schedule.csv"_s;
const QString MISTAKES = QStringLiteral(OZNA_SOURCES "/tests/data/mistakes/together");

} // namespace

// Mistakes of several lines, and of what a parameter means: each is found on its line, as one thing.
class CheckRowsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void MistakesAreFound_data();
    void MistakesAreFound();

private:
    [[nodiscard]] QStringList Findings(const QStringList& lines) const;

    CommandCall m_call;
};

QStringList CheckRowsTest::Findings(const QStringList& lines) const
{
    m_call.Write(SCHEDULE, lines.join(u'\n').toUtf8() + '\n');
    QStringList found = m_call
                            .Run({u"check"_s, SCHEDULE, u"--today"_s, u"2024-05-15"_s, u"--tz"_s, u"Europe/Rome"_s,
                                  u"--playlists"_s, CheckRun::DataFolder() + u"/playlists"_s})
                            .output.split(u'\n', Qt::SkipEmptyParts);
    if (!found.isEmpty())
        found.removeLast(); // which counts them
    return found;
}

void CheckRowsTest::MistakesAreFound_data()
{
    QTest::addColumn<QStringList>("bad");
    QTest::addColumn<QStringList>("findings");
    QTest::addColumn<QStringList>("corrected");

    QFile file(MISTAKES);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    for (const QString& paragraph : QString::fromUtf8(file.readAll()).split(u"\n\n"_s).mid(1))
    {
        const QStringList lines = paragraph.split(u'\n', Qt::SkipEmptyParts);
        const auto with = [&lines](QChar sign) {
            QStringList found;
            for (const QString& line : lines.filter(QRegularExpression(u"^[%1] "_s.arg(sign))))
                found.append(line.mid(2));
            return found;
        };
        QTest::newRow(qPrintable(with(u'=').value(0))) << with(u'-') << with(u'>') << with(u'+');
    }
}

void CheckRowsTest::MistakesAreFound()
{
    QFETCH(const QStringList, bad);
    QFETCH(const QStringList, findings);
    QFETCH(const QStringList, corrected);
    const QStringList found = Findings(bad);
    QVERIFY2(found.size() == findings.size(), qPrintable(found.join(u'\n')));
    for (qsizetype i = 0; i < found.size(); ++i)
    {
        const QStringList parts = findings[i].split(QRegularExpression(u"[ :]"_s)); // kind, line and column
        QVERIFY2(found[i].startsWith(u"%1:%2:"_s.arg(SCHEDULE, parts[1])), qPrintable(found[i]));
        QVERIFY2(found[i].endsWith(u" [%1]"_s.arg(parts[0])), qPrintable(found[i]));
    }
    if (!corrected.isEmpty())
        QCOMPARE(Findings(corrected), QStringList());
}

OZNA_CASE(CheckRows, CheckRowsTest)
#include "tst_CheckRows.moc"
