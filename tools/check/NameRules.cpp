#include "Columns.h"
#include "Rules.h"

#include "engine/Workspace.h"
#include "meant/Meant.h"
#include "text/NumberText.h"

#include <QRegularExpression>

using namespace ScheduleFields;

namespace
{

constexpr QChar SEMICOLON = u';';
constexpr int LOUDEST = 100;
const QString RTSP = QStringLiteral("rtsp://%1:%2");

// meant: the first parameters; empty where that cannot be known.
Finding New(const Entry& entry, FindingKind kind, const QString& text, const QString& advice, const QString& meant)
{
    Finding finding{entry.line.number, kind, Entry::FieldName(FIELD_PARAMETERS), text, advice};
    if (!meant.isEmpty())
        finding.suggestion = entry.WithParameter(0, meant);
    return finding;
}

// What a stream takes.
bool IsPortAndPath(const QString& given)
{
    static const QRegularExpression FORM(QStringLiteral("^[0-9]{1,5}(/.*)?$"));
    return FORM.match(given).hasMatch();
}

// A file's name may have a ";", but then no number alone behind it.
void LookAtSemicolon(const Entry& entry, Findings& findings)
{
    const QString given = entry.parameters.value(0);
    const qsizetype place = given.lastIndexOf(SEMICOLON);
    const QString behind = given.mid(place + 1).trimmed();
    const std::optional<int> number = NumberText::ToInt(QStringView(behind));
    if (place <= 0 || !number)
        return;
    QString name = given.left(place).trimmed();
    if (entry.Is(TASK_PLAY_STREAM) && !IsPortAndPath(name) && !Meant::PortAndPath(name).isEmpty())
        name = Meant::PortAndPath(name);
    // A number that is no volume, or stands before one, is the length of a playlist's track.
    const bool isVolume = *number >= 0 && *number <= LOUDEST && entry.parameters.size() == 1;
    findings.Add(New(entry, FindingKind::SEMICOLON,
                     QStringLiteral("the name is \"%1\": a \";\" separates nothing here").arg(given),
                     isVolume ? QStringLiteral("write %1,%2 for the volume %2").arg(name, behind)
                              : QStringLiteral("write %1, without a length").arg(name),
                     isVolume ? name + u',' + behind : name));
}

// A blank where a "," was meant: behind the ending of a file's name, or in an address, and a volume behind it.
void LookAtBlank(const Entry& entry, Findings& findings)
{
    static const QRegularExpression MESSAGE(QStringLiteral(R"(^(.*\S\.[A-Za-z]\w{1,3})(\s+)(\S.*)$)"));
    static const QRegularExpression STREAM(QStringLiteral(R"(^(\S+)(\s+)(\S.*)$)"));
    const QString given = entry.parameters.value(0);
    const auto match = (entry.Is(TASK_PLAY_MESSAGE) ? MESSAGE : STREAM).match(given);
    const std::optional<int> number = NumberText::ToInt(QStringView(Meant::Number(match.captured(3))));
    if (!match.hasMatch() || entry.parameters.size() > 1 || !number || *number < 0 || *number > LOUDEST)
        return;
    const QString meant = match.captured(1) + QLatin1Char(PARAMETER_SEPARATOR) + QString::number(*number);
    Finding finding = New(entry, FindingKind::SEPARATORS,
                          QStringLiteral("the name is \"%1\": a blank separates nothing here").arg(given),
                          QStringLiteral("write %1 for the volume %2").arg(meant).arg(*number), meant);
    finding.column = Columns::OfParameter(entry.line.text, 0) + static_cast<int>(match.capturedStart(2));
    findings.Add(finding);
}

void LookAtAddress(const Entry& entry, Findings& findings)
{
    const QString given = entry.parameters.value(0);
    if (given.isEmpty() || IsPortAndPath(given))
        return;
    const QString meant = Meant::PortAndPath(given);
    findings.Add(New(entry, FindingKind::STREAM_ADDRESS,
                     QStringLiteral("the device's server is put in front: the stream becomes %1")
                         .arg(RTSP.arg(QLatin1String(Workspace::SERVER), given)),
                     meant.isEmpty() ? QStringLiteral("write port and path, as 8554/live")
                                     : QStringLiteral("write %1, the port and the path").arg(meant),
                     meant));
}

} // namespace

void Rules::FindOddNames(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        if (entry.Is(TASK_PLAY_STREAM) || entry.Is(TASK_PLAY_MESSAGE))
        {
            LookAtSemicolon(entry, findings);
            LookAtBlank(entry, findings);
        }
        if (entry.Is(TASK_PLAY_STREAM) && !entry.parameters.value(0).contains(SEMICOLON))
            LookAtAddress(entry, findings);
    }
}
