#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"
#include "text/SharedValues.h"

using namespace Qt::StringLiterals;

namespace
{

// A text with memory of its own.
QString Fresh(const QString& text)
{
    return QString(text.constData(), text.size());
}

bool IsShared(const QString& one, const QString& other)
{
    return one.constData() == other.constData();
}

TrackList Tracks(std::initializer_list<PlaylistItem> items)
{
    TrackList tracks;
    for (const PlaylistItem& item : items)
        tracks.Append(item);
    return tracks;
}

const PlaylistItem FIRST{u"first.mp3"_s, 60};
const PlaylistItem SECOND{u"second.mp3"_s, 30};

} // namespace

class SharedValuesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void EqualTextsShareTheirMemory();
    void WithoutAnObjectNothingIsShared();
    void EachTextStaysWhatItIs();
    void EqualListsOfTracksAreOne();
    void ATrackListKnowsItsTimes();
    void TasksOfEqualLinesShareTheirTexts();
};

void SharedValuesTest::EqualTextsShareTheirMemory()
{
    const SharedValues shared;
    const QString first = SharedValues::Of(Fresh(u"gong.mp3"_s));
    QVERIFY(IsShared(SharedValues::Of(Fresh(u"gong.mp3"_s)), first));
    QVERIFY(!IsShared(SharedValues::Of(Fresh(u"Gong.mp3"_s)), first));
}

void SharedValuesTest::WithoutAnObjectNothingIsShared()
{
    const QString first = SharedValues::Of(Fresh(u"gong.mp3"_s));
    {
        const SharedValues shared;
        QCOMPARE(SharedValues::Of(first), first);
    }
    const QString other = SharedValues::Of(Fresh(u"gong.mp3"_s));
    QCOMPARE(other, first);
    QVERIFY(!IsShared(other, first));
    QCOMPARE(*SharedValues::Of(Tracks({FIRST})), Tracks({FIRST}));
}

void SharedValuesTest::EachTextStaysWhatItIs()
{
    const SharedValues shared;
    QCOMPARE(SharedValues::Of(QString()), QString());
    // Many more than there are places.
    for (int round = 0; round < 2; ++round)
    {
        for (int i = 0; i < 20000; ++i)
            QCOMPARE(SharedValues::Of(QString::number(i)), QString::number(i));
    }
}

void SharedValuesTest::EqualListsOfTracksAreOne()
{
    const SharedValues shared;
    const auto first = SharedValues::Of(Tracks({FIRST, SECOND}));
    QCOMPARE(SharedValues::Of(Tracks({FIRST, SECOND})), first);
    for (const TrackList& other : {Tracks({FIRST}), Tracks({FIRST, FIRST}), Tracks({FIRST, {SECOND.file, 31}}),
                                   Tracks({FIRST, {u"third.mp3"_s, 30}}), Tracks({FIRST, SECOND, SECOND}), TrackList()})
        QVERIFY(*SharedValues::Of(other) == other);
    QVERIFY(*first == Tracks({FIRST, SECOND}));
}

void SharedValuesTest::ATrackListKnowsItsTimes()
{
    TrackList tracks;
    QVERIFY(tracks.IsEmpty());
    QCOMPARE(tracks.Total_s(), 0U);
    tracks.Append(FIRST);
    QVERIFY(!tracks.IsEmpty());
    QCOMPARE(tracks.Total_s(), 60U);
    QCOMPARE(tracks.LastStart_s(), 0U);
    tracks.Append(SECOND);
    QCOMPARE(tracks.Total_s(), 92U);
    QCOMPARE(tracks.LastStart_s(), 62U);
}

void SharedValuesTest::TasksOfEqualLinesShareTheirTexts()
{
    const SharedValues shared;
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\n", u"day"_s);
    const PlayPlaylist one(u"08:30:00"_s, Fresh(u"day"_s), u"-1"_s, Fresh(u"id"_s));
    const PlayPlaylist other(u"09:30:00"_s, Fresh(u"day"_s), u"-1"_s, Fresh(u"id"_s));
    QVERIFY(IsShared(one.m_identifier, other.m_identifier));
    QCOMPARE(&one.Tracks(), &other.Tracks());
    // A file that has changed in between has other tracks.
    Data().WritePlaylist("first.mp3;60\n", u"day"_s);
    const PlayPlaylist third(u"10:30:00"_s, u"day"_s, u"-1"_s, u"id"_s);
    QCOMPARE(third.Tracks().size(), 1U);
    QCOMPARE(one.Tracks().size(), 2U);
    LogRecorder::Clear();
}

OZNA_CASE(SharedValues, SharedValuesTest)
#include "tst_SharedValues.moc"
