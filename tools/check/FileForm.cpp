#include "FileForm.h"

#include "engine/Workspace.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace
{

constexpr qsizetype SAMPLE = 1024;
constexpr qsizetype MOST_OF = 4; // of the bytes of one half less than one in so many is no zero

QByteArray Content(const Workspace& workspace)
{
    QFile file(workspace.SchedulePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The zeros among the bytes at even places, and at odd ones.
std::array<qsizetype, 2> Zeros(const QByteArray& bytes)
{
    std::array<qsizetype, 2> zeros = {};
    for (qsizetype i = 0; i < bytes.size(); ++i)
        zeros.at(static_cast<size_t>(i % 2)) += bytes[i] == '\0' ? 1 : 0;
    return zeros;
}

} // namespace

std::optional<QStringList> FileForm::Utf16Lines(const Workspace& workspace)
{
    const QByteArray content = Content(workspace);
    const QByteArray sample = content.left(SAMPLE);
    if (QStringConverter::encodingForData(content) || sample.size() < 4)
        return std::nullopt;
    const auto zeros = Zeros(sample);
    const qsizetype half = sample.size() / 2;
    const bool isLittle = zeros[1] > half - half / MOST_OF && zeros[0] < half / MOST_OF;
    const bool isBig = zeros[0] > half - half / MOST_OF && zeros[1] < half / MOST_OF;
    if (!isLittle && !isBig)
        return std::nullopt;
    QStringDecoder decoder(isLittle ? QStringConverter::Utf16LE : QStringConverter::Utf16BE);
    QString text = decoder(content);
    QStringList lines = text.remove(u'\r').split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

std::vector<QStringList> FileForm::PartsAtReturns(const Workspace& workspace)
{
    const QByteArray content = Content(workspace);
    QStringDecoder decoder(QStringConverter::encodingForData(content).value_or(QStringConverter::Utf8));
    const QString text = decoder(content);
    std::vector<QStringList> lines;
    for (QString line : text.split(u'\n'))
    {
        if (line.endsWith(u'\r'))
            line.chop(1);
        lines.push_back(line.split(u'\r'));
    }
    return lines;
}
