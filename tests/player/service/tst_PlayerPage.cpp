#include "BuiltProgram.h"
#include "Suite.h"
#include "service/PlayerSettings.h"
#include "service/Status.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

// The manual page says what the player does.
class tst_PlayerPage final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void IsRenderedWithoutAWarning();
    void EveryStatusStandsInItAndNoOther();
    void EverySettingStandsInItAndNoOther();
    void EveryOptionStandsInItAndNoOther();

private:
    // What follows the heading up to the next.
    [[nodiscard]] QString Section(const QString& heading) const;
    [[nodiscard]] static QStringList Captured(const QString& text, const QString& pattern);

    inline static const QString PATH = QStringLiteral(OZNA_SOURCES "/packaging/man/ozna-player.8");
    QString m_page;
};

void tst_PlayerPage::initTestCase()
{
    QFile file(PATH);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_page = QString::fromUtf8(file.readAll()).replace(u"\\-"_s, u"-"_s);
}

QString tst_PlayerPage::Section(const QString& heading) const
{
    return m_page.section(u"\n.SH %1\n"_s.arg(heading), 1).section(u"\n.SH "_s, 0, 0);
}

QStringList tst_PlayerPage::Captured(const QString& text, const QString& pattern)
{
    QStringList found;
    const QRegularExpression form(pattern, QRegularExpression::MultilineOption);
    for (const QRegularExpressionMatch& match : form.globalMatch(text))
        found.append(match.captured(1));
    found.sort();
    return found;
}

void tst_PlayerPage::IsRenderedWithoutAWarning()
{
    QProcess process;
    process.start(u"groff"_s, {u"-man"_s, u"-Tutf8"_s, u"-ww"_s, PATH});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(), QByteArray());
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(!process.readAllStandardOutput().isEmpty());
}

void tst_PlayerPage::EveryStatusStandsInItAndNoOther()
{
    QString expected;
    for (const StatusWords& row : STATUS_TABLE)
        expected += u"\n.TP\n.B %1\n%2"_s.arg(static_cast<int>(row.status)).arg(QLatin1String(row.words));
    const QString section = Section(u"STATUS"_s);
    QCOMPARE(section.mid(section.indexOf(u"\n.TP"_s)), expected);
}

void tst_PlayerPage::EverySettingStandsInItAndNoOther()
{
    QStringList names = PlayerSettings::Names();
    names.sort();
    QVERIFY(!names.isEmpty());
    QCOMPARE(Captured(Section(u"SETTINGS"_s), u"^\\.TP\n\\.BI? ([A-Za-z_]+)"_s), names);
}

void tst_PlayerPage::EveryOptionStandsInItAndNoOther()
{
    QProcess process;
    BuiltProgram::Set(process, u"ozna-player"_s, {u"--help"_s});
    process.start();
    QVERIFY(process.waitForFinished());
    const QString help = QString::fromUtf8(process.readAllStandardOutput());
    QStringList offered = Captured(help, u"(?:^|, )  ?(?:-[a-z], )?(--[a-z-]+)"_s);
    offered.removeAll(u"--help-all"_s);
    QVERIFY(offered.size() > 2);
    QCOMPARE(Captured(Section(u"OPTIONS"_s), u"^\\.BR? .*?(--[a-z-]+)$"_s), offered);
}

OZNA_CASE(PlayerPage, tst_PlayerPage)

#include "tst_PlayerPage.moc"
