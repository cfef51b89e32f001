#include "PeerSignal.h"

#include "Request.h"

#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QString TEXT = u"x"_s;
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
        {"sound"_L1, 2, {"sound.PlayPlaylistCompleted", {u"day"_s}, NO_TEXT}},
        {"sound"_L1, 16, {"sound.StreamEnabled", {false}, {{}, {0}, {u"false"_s}, {false, 1}}}},
        {"sound"_L1, ANY_KIND, {"sound.PlayFileCompleted", {u"gong.mp3"_s}, NO_TEXT}},
        {"photo"_L1, ANY_KIND, {"photo.PhotoTaken", {0, u"/1.jpg"_s}, {{}, {0}, {TEXT, 0}, {0, TEXT, 1}}}},
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
