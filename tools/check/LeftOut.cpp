#include "LeftOut.h"

#include "text/StringUtils.h"
#include "text/TextFile.h"

#include <QRegularExpression>

using namespace ScheduleFields;

LeftOut::LeftOut(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries)
{
    for (const ScheduleLine& line : lines)
    {
        if (line.IsRejected() || IsCommented(line))
            Take(line.text);
    }
    for (const Entry& entry : entries)
    {
        const bool hasLostParameters = entry.fieldCount > FIELD_COUNT || !entry.line.warnings.isEmpty();
        if (entry.GetAction() != nullptr && hasLostParameters)
            Take(entry.line.text);
    }
}

// Blank lines and lines with a "#" alone at their beginning are meant to be skipped.
bool LeftOut::IsCommented(const ScheduleLine& line)
{
    const qsizetype sign = line.isSkipped ? line.text.indexOf(TextFile::COMMENT_SIGN) : -1;
    return sign >= 0 && line.text.left(sign).contains(QLatin1Char(FIELD_SEPARATOR)) &&
           StringUtils::CountTokens(line.text, FIELD_SEPARATOR) > FIELD_TASK;
}

// Which field is which is not certain in such a line.
void LeftOut::Take(const QString& text)
{
    static const QRegularExpression SEPARATORS(QStringLiteral("\\s*[|,;#\\t]\\s*"));
    for (const QString& word : text.trimmed().split(SEPARATORS, Qt::SkipEmptyParts))
        m_words.insert(word);
    m_hasStop = m_hasStop || text.contains(QLatin1String("stop"), Qt::CaseInsensitive);
}
