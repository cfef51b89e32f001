#include "PeerSignal.h"

#include "RequestTable.h"

#include <QString>

#include <algorithm>
#include <string_view>

namespace
{

const QString TEXT = QStringLiteral("x");
constexpr std::string_view ANY_TYPE;

struct Row
{
    std::string_view peer;
    std::string_view type; // of the task
    PeerSignal signal;
};

const QList<Row>& Rows()
{
    static const QList<QVariantList> NO_TEXT{{}, {5}, {TEXT, 1}};
    static const QList<Row> rows{
        {"sound", "2 (PlayPlaylist)", {"sound.PlayPlaylistCompleted", {QStringLiteral("day")}, NO_TEXT}},
        {"sound",
         "16 (PlayStream)",
         {"sound.StreamEnabled", {false}, {{}, {0}, {QStringLiteral("false")}, {false, 1}}}},
        {"sound", ANY_TYPE, {"sound.PlayFileCompleted", {QStringLiteral("gong.mp3")}, NO_TEXT}},
        {"photo", ANY_TYPE, {"photo.PhotoTaken", {0, QStringLiteral("/1.jpg")}, {{}, {0}, {TEXT, 0}, {0, TEXT, 1}}}},
    };
    return rows;
}

} // namespace

const PeerSignal* FindSignal(const Request& request)
{
    const auto row = std::ranges::find_if(Rows(), [&](const Row& candidate) {
        return candidate.peer == request.peer && (candidate.type == ANY_TYPE || candidate.type == request.type);
    });
    return row != Rows().end() ? &row->signal : nullptr;
}
