#include "PlaylistFile.h"

#include "StringUtils.h"

#include <stdexcept>

namespace
{

constexpr int LONGEST_IGNORED_LINE = 9;
constexpr char SEPARATOR = ';';
constexpr int FIELDS = 2;

PlaylistItem ParseTrack(const QString& text)
{
    if (StringUtils::CountTokens(text, SEPARATOR) < FIELDS)
        throw std::out_of_range("playlist line");
    const QStringList fields = StringUtils::FirstTokens(text, SEPARATOR, FIELDS);
    return {fields[0], fields[1].toInt()};
}

PlaylistFile::LineKind Parse(const QString& text, PlaylistItem& track)
{
    if (text.size() <= LONGEST_IGNORED_LINE || TextFile::IsBlankOrComment(text))
        return PlaylistFile::LineKind::IGNORED;
    try
    {
        track = ParseTrack(text);
        return PlaylistFile::LineKind::TRACK;
    }
    catch (const std::exception&)
    {
        return PlaylistFile::LineKind::BROKEN;
    }
}

} // namespace

PlaylistFile::PlaylistFile(const QString& path)
    : m_file(path)
{
}

bool PlaylistFile::ReadLine(Line& line)
{
    line.track = {};
    if (!m_file.ReadLine(line.text))
        return false;
    line.kind = Parse(line.text, line.track);
    return true;
}
