#include "BusMessages.h"
#include "BusTest.h"
#include "Lines.h"
#include "PlayKinds.h"
#include "Rows.h"
#include "Suite.h"

#include <QRegularExpression>

#include <array>

using namespace Lines;
using namespace Qt::StringLiterals;

namespace
{

const QTime TO_FIND(8, 29, 48); // early, but not yet ready
const QTime DUE(8, 30);
const QTime A_MINUTE_LATER(8, 31);

// When who has died comes back, day by day.
enum class Return
{
    AT_ONCE,
    AFTER_A_MINUTE,
    NEVER,
};
constexpr std::array RETURNS{Return::AT_ONCE, Return::AFTER_A_MINUTE, Return::NEVER, Return::NEVER};

struct Death
{
    const char* name;
    const char* moment;
    std::span<const PlayKind> kinds; // of the schedule's lines
};

// A process dies in one call.
constexpr std::array DEATHS{
    Death{"before", "before", PLAY_KINDS},
    Death{"after", "after", PLAY_KINDS},
    Death{"in-message", "in", std::span(PLAY_KINDS).subspan<0, 1>()},
    Death{"in-playlist", "in", std::span(PLAY_KINDS).subspan<1, 1>()},
    Death{"in-stream", "in", std::span(PLAY_KINDS).subspan<2, 1>()},
    Death{"in-photo", "in", std::span(PLAY_KINDS).subspan<3, 1>()},
    Death{"in-series", "in", std::span(PLAY_KINDS).subspan<4, 1>()},
};

// What of the daemon's records, up to level 2, tells of the fault of a day.
QStringList Told(std::span<const PlayKind> kinds, QByteArrayView moment)
{
    QStringList told;
    for (const PlayKind& kind : kinds)
    {
        const QString error =
            QString::fromLatin1(moment == "in" ? GONE_IN_THE_CALL : NO_OWNER).replace(u"%1"_s, kind.Start().Peer());
        if (moment != "after")
            told += Shown(Answered(kind.Start().Records(Outcome::BUS_ERROR), error, 0), 2);
        // Photo work is under way also where the request failed.
        if (moment == "after" || (moment == "in" && kind.Peer() == "photo"))
            told += kind.Start().EndedWithPeer();
    }
    told.sort();
    return told;
}

} // namespace

// On three days the player and the camera die before they have told the end. They come back at once, a minute later,
// and not at all. The lines of the schedule are asked for on every day all the same, once.
class PlayerDies : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void TheLinesAreAskedForOnEveryDay_data() { AddRows(DEATHS); }
    void TheLinesAreAskedForOnEveryDay();

private:
    // The clock stands still until every line is found.
    void FindAll(const QDate& day);
    void Perform(const QDate& day, QByteArrayView moment);
    // A minute later who has died is there again, or not, and nothing more is asked for on that day.
    void GoOn(const QDate& day, bool isBackAtOnce, bool isBackLater);
    // Waits until the far timer has fired once more.
    [[nodiscard]] bool WaitForPass();
    [[nodiscard]] qsizetype Count(const QString& part) const { return m_lines.filter(part).size(); }

    void TakeLines() { m_lines += Daemon().Take(); }

    std::span<const PlayKind> m_kinds; // of the schedule's lines
    QStringList m_lines;               // of the daemon, on that day
};

bool PlayerDies::WaitForPass()
{
    const auto passes = [this] {
        TakeLines();
        return Count(u"Checking far actions"_s);
    };
    const qsizetype before = passes();
    return WaitUntil([&] { return passes() > before; });
}

void PlayerDies::FindAll(const QDate& day)
{
    QVERIFY(WaitUntil([&] {
        Time().Set(day, TO_FIND);
        TakeLines();
        return Count(u"EARLY action found"_s) == std::ssize(m_kinds);
    }));
}

void PlayerDies::Perform(const QDate& day, QByteArrayView moment)
{
    if (moment == "before")
        StopDevice();
    else if (moment == "in")
        Device().AnswerByExit(m_kinds.front().Method());
    Time().Set(day, DUE);
    for (const PlayKind& kind : m_kinds)
    {
        QVERIFY(WaitUntil([&] {
            TakeLines();
            return Count(moment == "after" ? Shown(kind.Start().Records(Outcome::ACCEPTED), 9).last()
                                           : u"READY action found: "_s + kind.Start().Type()) > 0;
        }));
    }
    // Two lines may be of one kind.
    QVERIFY(WaitUntil([&] {
        TakeLines();
        return Count(u"READY action found"_s) == std::ssize(m_kinds);
    }));
    // The record stands ahead of the call that ends the process.
    if (moment == "in")
        QVERIFY(WaitUntil([&] { return !Device().IsRunning(); }));
    if (moment == "after")
    {
        QCOMPARE(Device().Calls().size(), std::ssize(m_kinds));
        StopDevice();
    }
}

void PlayerDies::GoOn(const QDate& day, bool isBackAtOnce, bool isBackLater)
{
    if (isBackAtOnce)
        StartDevice();
    Time().Set(day, A_MINUTE_LATER);
    QVERIFY(WaitForPass());
    if (!isBackLater)
        return;
    StartDevice();
    // The playlist could still be joined: its end counts as told.
    QVERIFY(WaitForPass());
}

void PlayerDies::TheLinesAreAskedForOnEveryDay()
{
    const auto& [name, moment, kinds] = Row<Death>();
    m_kinds = kinds;
    QByteArray schedule;
    for (const PlayKind& kind : kinds)
        schedule += Due(kind.Start());
    WriteSchedule(schedule);
    WritePlaylist("first.mp3;600\nsecond.mp3;600\n", u"day"_s);
    Time().Set(MONDAY, QTime(6, 0));
    QVERIFY(StartDaemon());
    QDate day = MONDAY;
    bool isThere = true;
    for (const Return comesBack : RETURNS)
    {
        FindAll(day);
        if (QTest::currentTestFailed())
            return;
        const char* const today = isThere ? moment : "before";
        Perform(day, today);
        GoOn(day, comesBack == Return::AT_ONCE, comesBack == Return::AFTER_A_MINUTE);
        if (QTest::currentTestFailed())
            return;
        // A process that dies loses its names in an order of the bus's own.
        QStringList told = m_lines.filter(QRegularExpression(u"^[12] "_s));
        told.sort();
        COMPARE_LINES(told, Told(kinds, today));
        QCOMPARE(Count(u"READY action found"_s), std::ssize(kinds));
        m_lines.clear();
        isThere = comesBack != Return::NEVER;
        day = day.addDays(1);
    }
}

OZNA_CASE(PlayerDies, PlayerDies)
#include "tst_PlayerDies.moc"
