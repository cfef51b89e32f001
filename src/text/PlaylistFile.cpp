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

PlaylistFile::Line Parse(const QString& text)
{
    if (text.size() <= LONGEST_IGNORED_LINE || TextFile::IsBlankOrComment(text))
        return {PlaylistFile::LineKind::IGNORED, text, {}};
    try
    {
        return {PlaylistFile::LineKind::TRACK, text, ParseTrack(text)};
    }
    catch (const std::exception&)
    {
        return {PlaylistFile::LineKind::BROKEN, text, {}};
    }
}

} // namespace

PlaylistFile::PlaylistFile(const QString& path)
    : m_file(path)
{
}

bool PlaylistFile::ReadLine(Line& line)
{
    QString text;
    if (!m_file.ReadLine(text))
        return false;
    line = Parse(text);
    return true;
}
