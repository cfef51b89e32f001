#include "CheckRun.h"
#include "CommandCall.h"
#include "MistakeTable.h"
#include "Suite.h"
#include "TextDiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype MOST_STEPS = 8;

} // namespace

// Mistakes that people make: each is found where it is, as one thing, and who follows the advice has what was meant.
class CheckMistakesTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void EveryMistakeHasANameOfItsOwn();
    void TheMistakeIsFoundAndTheAdviceCorrectsIt_data();
    void TheMistakeIsFoundAndTheAdviceCorrectsIt();

private:
    [[nodiscard]] static std::vector<Mistake> All();
    [[nodiscard]] QJsonArray Check(const QByteArray& schedule) const;
    [[nodiscard]] static QStringList Told(const QJsonArray& findings);
    // The schedule after the advice.
    [[nodiscard]] static QByteArray Corrected(const QByteArray& schedule, const QJsonObject& finding);

    const CommandCall m_call;
};

std::vector<Mistake> CheckMistakesTest::All()
{
    std::vector<Mistake> all;
    for (const char* const file : {"line", "lines", "together"})
    {
        for (const Mistake& mistake : MistakeTable::Read(CheckRun::MistakeFile(file)))
            all.push_back(mistake);
    }
    return all;
}

QJsonArray CheckMistakesTest::Check(const QByteArray& schedule) const
{
    m_call.Write(u"schedule.csv"_s, schedule);
    const CheckRun run({m_call.Folder() + u"/schedule.csv"_s, u"--json"_s, u"--today"_s, u"2024-05-15"_s, u"--tz"_s,
                        u"Europe/Rome"_s, u"--playlists"_s, CheckRun::DataFolder() + u"/playlists"_s});
    return QJsonDocument::fromJson(run.output).object().value(u"findings").toArray();
}

QStringList CheckMistakesTest::Told(const QJsonArray& findings)
{
    QStringList told;
    for (const QJsonValue& finding : findings)
        told.append(u"%1 %2:%3"_s.arg(finding[u"kind"].toString())
                        .arg(finding[u"line"].toInt())
                        .arg(finding[u"column"].toInt()));
    return told;
}

QByteArray CheckMistakesTest::Corrected(const QByteArray& schedule, const QJsonObject& finding)
{
    QByteArrayList lines = schedule.split('\n');
    const qsizetype first = finding[u"line"].toInt() - 1;
    const qsizetype count = finding[u"replaces"].toInt();
    lines.remove(first, count);
    lines.insert(first, finding[u"suggestion"].toString().toUtf8());
    // Behind a last line without an end there is nothing.
    return lines.join('\n') + (first + 1 == lines.size() ? "\n" : "");
}

void CheckMistakesTest::EveryMistakeHasANameOfItsOwn()
{
    QSet<QByteArray> names;
    for (const Mistake& mistake : All())
    {
        QVERIFY2(!names.contains(mistake.name), mistake.name.constData());
        names.insert(mistake.name);
    }
}

void CheckMistakesTest::TheMistakeIsFoundAndTheAdviceCorrectsIt_data()
{
    QTest::addColumn<Mistake>("mistake");
    for (const Mistake& mistake : All())
        QTest::newRow(mistake.name.constData()) << mistake;
}

void CheckMistakesTest::TheMistakeIsFoundAndTheAdviceCorrectsIt()
{
    QFETCH(const Mistake, mistake);
    const QJsonArray findings = Check(mistake.schedule);
    const QByteArray difference = TextDiff(mistake.findings, Told(findings), "finding");
    QVERIFY2(difference.isEmpty(), difference.constData());

    // One after the other, as people do.
    QByteArray schedule = mistake.schedule;
    QJsonArray left = findings;
    for (qsizetype step = 0; step < MOST_STEPS && left.first()[u"suggestion"].isString(); ++step)
    {
        schedule = Corrected(schedule, left.first().toObject());
        left = Check(schedule);
        if (left.isEmpty())
            break;
    }
    QCOMPARE(left.isEmpty(), !mistake.corrected.isEmpty());
    if (!left.isEmpty())
        return;
    const QByteArray wrong =
        TextDiff(mistake.corrected, QString::fromUtf8(schedule).chopped(1).split(u'\n'), "corrected line");
    QVERIFY2(wrong.isEmpty(), wrong.constData());
}

OZNA_CASE(CheckMistakes, CheckMistakesTest)
#include "tst_CheckMistakes.moc"
