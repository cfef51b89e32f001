#include "Columns.h"
#include "Entry.h"
#include "FileForm.h"
#include "LineEnds.h"
#include "LineForm.h"
#include "Rules.h"

#include "meant/Cells.h"
#include "meant/Meant.h"
#include "text/TextFile.h"

#include <QRegularExpression>

#include <algorithm>

using namespace ScheduleFields;

namespace
{

constexpr qsizetype LONGEST = 2000; // nobody writes a line that is longer
constexpr qsizetype SHORT = 100;    // a line of so many characters may stand in the advice
const QString COMMENT = QStringLiteral("# ");

// Of a line that was told of: nothing else is told, and it stands for what it means.
void Close(const Workspace& workspace, ScheduleLine& line, Findings& findings, const std::optional<QString>& meant)
{
    findings.Close(line.number);
    if (!meant)
        return;
    const bool hasLineEnd = line.hasLineEnd;
    line = ScheduleLine::Read(workspace, meant->section(u'\n', 0, 0), line.number);
    line.hasLineEnd = hasLineEnd;
}

bool LookAtEncoding(const Workspace& workspace, std::vector<ScheduleLine>& lines, Findings& findings)
{
    const std::optional<QStringList> meant = FileForm::Utf16Lines(workspace);
    if (!meant || lines.empty())
        return false;
    Finding finding{1,
                    FindingKind::ENCODING,
                    Entry::FieldName(FIELD_COUNT),
                    QStringLiteral("the file is UTF-16 without a byte-order mark: no line of it can be read"),
                    QStringLiteral("save the file as UTF-8, or with its byte-order mark"),
                    1};
    finding.suggestion = meant->join(u'\n');
    finding.replacedLines = static_cast<int>(lines.size());
    finding.isRejection = true;
    findings.Add(finding);
    for (const ScheduleLine& line : lines)
        findings.Close(line.number);
    return true;
}

// Where carriage returns stand for ends of lines, each part is a line.
void LookAtReturns(const Workspace& workspace, std::vector<ScheduleLine>& lines, Findings& findings)
{
    if (std::ranges::none_of(lines, &ScheduleLine::hasLoneReturn))
        return;
    const std::vector<QStringList> parts = FileForm::PartsAtReturns(workspace);
    for (ScheduleLine& line : lines)
    {
        const auto place = static_cast<size_t>(line.number) - 1;
        if (!line.hasLoneReturn || place >= parts.size())
            continue;
        QStringList all = parts[place];
        all.removeAll(QString());
        const bool areLines = all.size() > 1 && std::ranges::all_of(all, [&](const QString& part) {
                                  return !ScheduleLine::Read(workspace, part).IsRejected();
                              });
        Finding finding{line.number,
                        FindingKind::CARRIAGE_RETURN,
                        Entry::FieldName(FIELD_COUNT),
                        QString::fromLatin1(LineEnds::LONE_RETURN),
                        QString::fromLatin1(LineEnds::LONE_RETURN_ADVICE),
                        static_cast<int>(parts[place].first().size()) + 1};
        finding.isRejection = areLines && line.IsRejected();
        finding.logged = finding.isRejection ? line.rejected->reason : QString();
        finding.suggestion = areLines ? all.join(u'\n') : line.text;
        findings.Add(finding);
        line.hasLoneReturn = false;
        if (areLines)
            Close(workspace, line, findings, finding.suggestion);
    }
}

// A line of names of columns, above the first entry.
bool IsHeader(const ScheduleLine& line)
{
    // Beside such a name a word that is a day's, or near a task's, is a column's too.
    static const QRegularExpression COLUMN(
        QStringLiteral("^(days?|(start )?(time|date)|from|to|task|parameters?|volume|message|file|name)$"),
        QRegularExpression::CaseInsensitiveOption);
    // No number, no file's name, no address.
    static const QRegularExpression NAME(QStringLiteral("^[(]?\\p{L}[\\p{L}\\d _()/-]*\\.?$"));
    const QStringList parts = Cells::Of(line.text, QStringLiteral("|;,\t")).parts;
    const auto isColumn = [](const QString& part) { return COLUMN.match(part).hasMatch(); };
    const auto isName = [](const QString& part) { return part.isEmpty() || NAME.match(part).hasMatch(); };
    const auto isTask = [](const QString& part) { return TypeOfScheduleName(part) != TASK_UNKNOWN; };
    const auto isNearTask = [](const QString& part) {
        return !Meant::Days(part).isEmpty() || !Meant::Task(part).isEmpty() ||
               !Meant::TaskAndParameters(part).isEmpty();
    };
    return parts.size() > 1 && std::ranges::all_of(parts, isName) &&
           std::ranges::none_of(parts, [&](const QString& part) { return isTask(part) && !isColumn(part); }) &&
           (std::ranges::any_of(parts, isColumn) || std::ranges::none_of(parts, isNearTask));
}

// Text that was meant for people: nothing in it is a field.
bool IsForPeople(const QString& text)
{
    static const QRegularExpression SIGN(QStringLiteral("^\\s*(//|--|;|%|!|'|/\\*|<!--|REM\\b|sep=)"));
    const bool hasLetters = std::ranges::any_of(text, [](QChar sign) { return sign.isLetter(); });
    return !text.contains(QLatin1Char(FIELD_SEPARATOR)) && (hasLetters || SIGN.match(text).hasMatch());
}

QString AsComment(const QString& text)
{
    static const QRegularExpression SIGN(QStringLiteral("^\\s*(//|--|;|%|!|'|REM\\b)\\s*"));
    const QString words = QString(text).remove(SIGN);
    return COMMENT + (words.endsWith(TextFile::COMMENT_SIGN) ? words.chopped(1) : words);
}

Finding FindingOf(const ScheduleLine& line, const LineForm& form)
{
    Finding finding{line.number, form.kind, form.field, form.text, form.advice, Columns::At(line.text, form.position)};
    finding.suggestion = form.meant;
    finding.isRejection = line.IsRejected();
    finding.logged = finding.isRejection ? line.rejected->reason : QString();
    return finding;
}

// Of a line that is rejected.
LineForm Comment(const ScheduleLine& line)
{
    return {FindingKind::FIELD_COUNT,
            Entry::FieldName(FIELD_COUNT),
            0,
            QStringLiteral("has no fields"),
            QStringLiteral("put \"# \" before it if it is a comment"),
            AsComment(line.text)};
}

LineForm Header(const ScheduleLine& line)
{
    return {FindingKind::HEADER,
            Entry::FieldName(FIELD_COUNT),
            0,
            QStringLiteral("is a headline, and no entry"),
            QStringLiteral("put \"# \" before it, or take it out"),
            COMMENT + line.text};
}

std::optional<LineForm> FormOf(const Workspace& workspace, const ScheduleLine& line, bool isFirst)
{
    if (line.text.size() > LONGEST)
        return std::nullopt;
    if (line.IsRejected() && isFirst && IsHeader(line))
        return Header(line);
    std::optional<LineForm> form = LineForm::Of(workspace, line);
    if (!form && line.IsRejected() && IsForPeople(line.text))
        form = Comment(line);
    return form;
}

// Tells one thing once of lines that follow each other.
class Run final
{
public:
    Run(std::vector<ScheduleLine>& lines, Findings& findings)
        : m_lines(lines)
        , m_findings(findings)
    {
    }

    // finding: of a line behind all that were added so far.
    void Add(const Finding& finding)
    {
        const bool isAlike = m_finding && m_finding->kind == finding.kind && m_finding->text == finding.text &&
                             m_finding->suggestion.has_value() && finding.suggestion.has_value() &&
                             (finding.kind == FindingKind::SEPARATORS || finding.kind == FindingKind::QUOTES);
        if (!isAlike)
        {
            End();
            m_finding = finding;
            m_count = 1;
            return;
        }
        // Comments stay as they are.
        for (int number = m_finding->line + m_finding->replacedLines; number < finding.line; ++number)
            *m_finding->suggestion += u'\n' + m_lines[static_cast<size_t>(number) - 1].text;
        *m_finding->suggestion += u'\n' + *finding.suggestion;
        m_finding->replacedLines = finding.line - m_finding->line + 1;
        m_finding->isRejection = m_finding->isRejection || finding.isRejection;
        ++m_count;
    }

    void End()
    {
        if (!m_finding)
            return;
        if (m_count > 1)
        {
            m_finding->text += QStringLiteral(", in %1 lines").arg(m_count);
            m_finding->logged.clear();
        }
        else if (m_finding->suggestion && m_finding->suggestion->size() <= SHORT &&
                 !m_finding->suggestion->contains(u'\n'))
            m_finding->advice += QStringLiteral(": ") + *m_finding->suggestion;
        m_findings.Add(*m_finding);
        m_finding.reset();
    }

private:
    const std::vector<ScheduleLine>& m_lines;
    Findings& m_findings;
    std::optional<Finding> m_finding;
    int m_count = 0;
};

} // namespace

void Rules::FindWrongForm(const Workspace& workspace, std::vector<ScheduleLine>& lines, Findings& findings)
{
    if (LookAtEncoding(workspace, lines, findings))
        return;
    LookAtReturns(workspace, lines, findings);
    bool isFirst = true;
    Run run(lines, findings);
    std::vector<std::pair<ScheduleLine*, std::optional<QString>>> told;
    for (ScheduleLine& line : lines)
    {
        if (line.isSkipped)
            continue;
        const std::optional<LineForm> form = FormOf(workspace, line, isFirst);
        isFirst = false;
        if (!form)
        {
            run.End();
            continue;
        }
        run.Add(FindingOf(line, *form));
        told.emplace_back(&line, form->meant);
    }
    run.End();
    for (const auto& [line, meant] : told)
        Close(workspace, *line, findings, meant);
}
