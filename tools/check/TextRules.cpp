#include "Columns.h"
#include "LeftOut.h"
#include "LineEnds.h"
#include "Rules.h"

#include "text/StringUtils.h"
#include "text/TextFile.h"

#include <QSet>

#include <algorithm>
#include <array>

using namespace ScheduleFields;

namespace
{

constexpr char32_t LAST_LATIN1 = 0xff;
constexpr char32_t TAB = u'\t';

bool IsUndecodable(char32_t character)
{
    return character == QChar::ReplacementCharacter;
}

// A tab at the end of a field does no harm, and inside of a text hardly any.
bool IsControl(char32_t character)
{
    return character != TAB && QChar::category(character) == QChar::Other_Control;
}

bool IsBeyondLatin1(char32_t character)
{
    return character > LAST_LATIN1 && !IsUndecodable(character);
}

struct Row
{
    FindingKind kind;
    bool (*holds)(char32_t character);
    const char* text;
    const char* advice;
};

constexpr std::array TABLE{
    Row{FindingKind::UNDECODABLE, IsUndecodable, "has bytes that are no text: each counts as \"?\"",
        "save the file as UTF-8"},
    Row{FindingKind::CONTROL_CHARACTER, IsControl, "has the control character %1", "take it out"},
    Row{FindingKind::NOT_LATIN1, IsBeyondLatin1, "has the character %1, which counts as \"?\"",
        "write it, and name files, with characters of Latin-1"},
};

// Behind the ninth field there is none.
QString FieldOf(const QString& text, qsizetype position)
{
    const auto field = std::min<qsizetype>(text.left(position).count(QLatin1Char(FIELD_SEPARATOR)), FIELD_COUNT);
    return Entry::FieldName(static_cast<Field>(field));
}

void LookAtCharacters(const ScheduleLine& line, Findings& findings)
{
    for (const Row& row : TABLE)
    {
        const auto characters = line.text.toUcs4();
        const auto found = std::ranges::find_if(characters, [&](uint character) { return row.holds(character); });
        if (found == characters.end())
            continue;
        const auto before =
            QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()), found - characters.begin());
        QString text = QString::fromLatin1(row.text);
        if (text.contains(QLatin1String("%1")))
            text = text.arg(QStringLiteral("U+%1").arg(*found, 4, 16, QLatin1Char('0')).toUpper());
        findings.Add({line.number, row.kind, FieldOf(line.text, before.size()), text, QString::fromLatin1(row.advice),
                      Columns::At(line.text, before.size())});
    }
}

void LookAtEnd(const ScheduleLine& line, Findings& findings)
{
    const QString whole = Entry::FieldName(FIELD_COUNT);
    if (line.hasLoneReturn)
        findings.Add({line.number, FindingKind::CARRIAGE_RETURN, whole, QString::fromLatin1(LineEnds::LONE_RETURN),
                      QString::fromLatin1(LineEnds::LONE_RETURN_ADVICE)});
    if (!line.hasLineEnd)
        findings.Add({line.number, FindingKind::NO_LINE_END, whole, QString::fromLatin1(LineEnds::NONE),
                      QString::fromLatin1(LineEnds::NONE_ADVICE)});
}

void LookAtComment(const ScheduleLine& line, Findings& findings)
{
    if (!LeftOut::IsCommented(line))
        return;
    const qsizetype sign = line.text.indexOf(TextFile::COMMENT_SIGN);
    Finding finding{line.number,
                    FindingKind::COMMENTED,
                    FieldOf(line.text, sign),
                    QStringLiteral("the \"#\" makes a comment of the whole line: nothing of it is done"),
                    QStringLiteral("put the comment on a line of its own, or take the \"#\" out"),
                    Columns::At(line.text, sign)};
    // One inside of a name begins no comment.
    const QString before = line.text.left(sign);
    const bool beginsComment = before.back().isSpace() || before.endsWith(QLatin1Char(FIELD_SEPARATOR));
    if (beginsComment && StringUtils::CountTokens(before, FIELD_SEPARATOR) > FIELD_TASK)
        finding.suggestion = line.text.mid(sign) + u'\n' + before.trimmed();
    else
        finding.suggestion = QString(line.text).remove(TextFile::COMMENT_SIGN);
    findings.Add(finding);
}

void LookAtCount(const Entry& entry, Findings& findings)
{
    // The reason of a rejected line says it too.
    if (entry.fieldCount <= FIELD_COUNT || entry.GetAction() == nullptr)
        return;
    findings.Add({entry.line.number, FindingKind::TEN_FIELDS, Entry::FieldName(FIELD_PARAMETERS),
                  QStringLiteral("with %1 fields the task gets no parameters").arg(entry.fieldCount),
                  QStringLiteral("take out the \"|\" behind the ninth field; separate parameters by \",\"")});
}

} // namespace

void Rules::FindOddText(const std::vector<ScheduleLine>& lines, const std::vector<Entry>& entries, Findings& findings)
{
    for (const ScheduleLine& line : lines)
    {
        LookAtEnd(line, findings);
        LookAtComment(line, findings);
    }
    for (const Entry& entry : entries)
    {
        LookAtCharacters(entry.line, findings);
        LookAtCount(entry, findings);
    }
}
