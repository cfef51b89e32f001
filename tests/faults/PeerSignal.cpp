#include "PeerSignal.h"

#include "Request.h"

#include <QString>

#include <algorithm>

namespace
{

const QString TEXT = QStringLiteral("x");
constexpr int ANY_KIND = -1;

struct Row
{
    QLatin1String peer;
    int kind; // of the task
    PeerSignal signal;
};

const QList<Row>& Rows()
{
    static const QList<QVariantList> NO_TEXT{{}, {5}, {TEXT, 1}};
    static const QList<Row> rows{
        {QLatin1String("sound"), 2, {"sound.PlayPlaylistCompleted", {QStringLiteral("day")}, NO_TEXT}},
        {QLatin1String("sound"),
         16,
         {"sound.StreamEnabled", {false}, {{}, {0}, {QStringLiteral("false")}, {false, 1}}}},
        {QLatin1String("sound"), ANY_KIND, {"sound.PlayFileCompleted", {QStringLiteral("gong.mp3")}, NO_TEXT}},
        {QLatin1String("photo"),
         ANY_KIND,
         {"photo.PhotoTaken", {0, QStringLiteral("/1.jpg")}, {{}, {0}, {TEXT, 0}, {0, TEXT, 1}}}},
    };
    return rows;
}

} // namespace

const PeerSignal* FindSignal(const Request& request)
{
    const QString peer = request.Peer();
    const auto row = std::ranges::find_if(Rows(), [&](const Row& candidate) {
        return candidate.peer == peer && (candidate.kind == ANY_KIND || candidate.kind == request.Row().kind);
    });
    return row != Rows().end() ? &row->signal : nullptr;
}
