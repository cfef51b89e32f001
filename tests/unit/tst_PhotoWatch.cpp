#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/Peers.h"
#include "tasks/Photo.h"

#include <PhotoManagerProxy.h>

#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* TAKEN = "9 [tasks/Photo.cpp] >>> Photo taken";

} // namespace

class PhotoWatchTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void EachTaskSeesEachPhotoInOrder();
    void WhatIsDeletedSeesNoMore_data();
    void WhatIsDeletedSeesNoMore();
    void TasksOfEarlierProxiesAreLeftAlone();

private:
    static void TakePhoto()
    {
        LogRecorder::Clear();
        Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, u"/photo.jpg"_s);
    }
};

void PhotoWatchTest::EachTaskSeesEachPhotoInOrder()
{
    Photo first(u"10,5"_s);
    const Photo idle(QString{});
    Photo second(u"10,7"_s);
    QVERIFY(first.Run());
    TakePhoto();
    QVERIFY(second.Run());
    TakePhoto();
    const char* const two = "9 [tasks/Photo.cpp] >>> Total photo: 2";
    const char* const one = "9 [tasks/Photo.cpp] >>> Total photo: 1";
    EXPECT_LOG(9, {TAKEN, two, TAKEN, TAKEN, one});
}

void PhotoWatchTest::WhatIsDeletedSeesNoMore_data()
{
    QTest::addColumn<QList<int>>("order");
    QTest::newRow("the first first") << QList<int>{0, 1, 2};
    QTest::newRow("the last first") << QList<int>{2, 1, 0};
    QTest::newRow("the middle one first") << QList<int>{1, 0, 2};
}

void PhotoWatchTest::WhatIsDeletedSeesNoMore()
{
    QFETCH(QList<int>, order);
    std::array<std::optional<Photo>, 3> tasks;
    for (auto& task : tasks)
        task.emplace(QString());
    LogLines expected(3, TAKEN);
    for (const int i : order)
    {
        TakePhoto();
        EXPECT_LOG(9, (expected));
        tasks.at(static_cast<size_t>(i)).reset();
        expected.removeLast();
    }
    TakePhoto();
    EXPECT_LOG(9, {});
}

void PhotoWatchTest::TasksOfEarlierProxiesAreLeftAlone()
{
    const Photo earlier(QString{});
    Peers::DeleteProxies();
    Peers::CreateProxies();
    {
        const Photo task(QString{});
        TakePhoto();
        EXPECT_LOG(9, {TAKEN});
    }
    TakePhoto();
    EXPECT_LOG(9, {});
    const Photo later(QString{});
    TakePhoto();
    EXPECT_LOG(9, {TAKEN});
}

OZNA_CASE(PhotoWatch, PhotoWatchTest)
#include "tst_PhotoWatch.moc"
