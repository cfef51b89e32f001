#include "CommandCall.h"
#include "Suite.h"
#include "ToolHelp.h"

#include <QTest>

using namespace Qt::StringLiterals;

// What bash offers behind ozna-schedule.
class tst_Completion final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void CommandsComeFirst();
    void EveryCommandOffersItsOptions();
    void ValuesAreOfferedByTheirKind_data();
    void ValuesAreOfferedByTheirKind();

private:
    // What is offered for the last of words, sorted.
    [[nodiscard]] QStringList Offered(const QStringList& words) const;

    CommandCall m_call;
};

QStringList tst_Completion::Offered(const QStringList& words) const
{
    static const QString SCRIPT =
        QStringLiteral("source " OZNA_SOURCES "/packaging/bash-completion/ozna-schedule || exit 1\n"
                       "COMP_WORDS=(ozna-schedule \"$@\")\n"
                       "COMP_CWORD=$#\n"
                       "_ozna_schedule " OZNA_TOOL " \"${COMP_WORDS[COMP_CWORD]}\" \"${COMP_WORDS[COMP_CWORD - 1]}\"\n"
                       "((${#COMPREPLY[@]} == 0)) || printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const CommandCall::Result result = m_call.RunProgram(u"bash"_s, QStringList{u"-uc"_s, SCRIPT, u"bash"_s} + words);
    if (result.status != 0 || !result.errors.isEmpty())
        return {u"failed"_s, result.errors};
    QStringList offered = result.output.split(u'\n', Qt::SkipEmptyParts);
    offered.sort();
    return offered;
}

void tst_Completion::CommandsComeFirst()
{
    QStringList expected = ToolHelp::Commands(m_call) + QStringList{u"--help"_s, u"--version"_s};
    expected.sort();
    QCOMPARE(Offered({QString()}), expected);
    QCOMPARE(Offered({u"ne"_s}), QStringList(u"next"_s));
}

void tst_Completion::EveryCommandOffersItsOptions()
{
    for (const QString& command : ToolHelp::Commands(m_call))
    {
        QStringList expected = ToolHelp::Options(m_call, command) + QStringList(u"--help"_s);
        expected.sort();
        QCOMPARE(Offered({command, u"-"_s}), expected);
    }
    QCOMPARE(Offered({u"next"_s, u"s.csv"_s, u"--f"_s}), QStringList(u"--from"_s));
}

void tst_Completion::ValuesAreOfferedByTheirKind_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("offered");

    const auto row = [](const char* words, const char* offered) {
        QTest::newRow(words) << QString::fromLatin1(words).split(u' ')
                             << QString::fromLatin1(offered).split(u' ', Qt::SkipEmptyParts);
    };
    row("next s", "schedule.csv season");
    row("diff schedule.csv s", "schedule.csv season");
    row("next --playlists s", "season");
    row("next schedule.csv --tz Europe/Rom", "Europe/Rome");
    row("next schedule.csv --tz Europ", "Europe/");
    row("next schedule.csv --tz = Europe/Rom", "Europe/Rome");
    row("next --playlists =", "season");
    row("next schedule.csv --from s", "");
    row("next schedule.csv -n s", "");
    row("explain s", "");
}

void tst_Completion::ValuesAreOfferedByTheirKind()
{
    m_call.Write(u"schedule.csv"_s, "");
    m_call.Write(u"season/summer"_s, "");
    QFETCH(const QStringList, words);
    QFETCH(const QStringList, offered);
    QCOMPARE(Offered(words), offered);
}

OZNA_CASE(Completion, tst_Completion)
#include "tst_Completion.moc"
