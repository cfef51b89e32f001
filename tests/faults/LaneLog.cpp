#include "LaneLog.h"

#include "Lines.h"
#include "TextDiff.h"

using namespace Qt::StringLiterals;

namespace
{

const QString PHOTO_SEEN = u"9 [tasks/Photo.cpp] >>> Photo taken"_s;

// Those of the levels that the matrix states, without those of a schedule that is loaded again.
QStringList Relevant(const QStringList& lines)
{
    constexpr int WARNING_LEVEL = 2;
    const qsizetype cleaned = lines.indexOf(Lines::CLEANED.first());
    QStringList shown;
    for (qsizetype i = 0; i < lines.size(); ++i)
    {
        const int level = lines[i].front().digitValue();
        const bool isLoading = cleaned >= 0 && i > cleaned && level > WARNING_LEVEL;
        if (level <= SHOWN_LEVEL && !isLoading)
            shown.append(lines[i]);
    }
    return shown;
}

bool IsTaskLine(const QString& line)
{
    return line.contains(u"[tasks/"_s) || line.contains(u"[Task.cpp]"_s);
}

} // namespace

LaneLog::LaneLog(const Request& request, DaemonProcess& daemon)
    : m_request(request)
    , m_daemon(daemon)
{
}

void LaneLog::BeginDay(const Fault* fault)
{
    m_fault = fault;
    static_cast<void>(Take());
}

QStringList LaneLog::Take()
{
    QStringList lines = m_daemon.Take();
    const auto isMissed = [](const QString& line) { return line.contains(u"] MISSED action: "_s); };
    std::ranges::copy_if(lines, std::back_inserter(m_missed), isMissed);
    lines.removeIf(isMissed);
    return lines;
}

QStringList LaneLog::CompareDay(const Expectation& expected)
{
    const QStringList lines = Take();
    QStringList schedulerLines = Relevant(lines);
    QStringList taskLines;
    std::ranges::copy_if(schedulerLines, std::back_inserter(taskLines), IsTaskLine);
    schedulerLines.removeIf(IsTaskLine);
    Compare("the scheduler's records", schedulerLines, expected.schedulerLines);
    Compare("the task's records", taskLines, expected.taskLines);
    Compare("the photos seen", {QString::number(lines.count(PHOTO_SEEN))}, {QString::number(expected.photos)});
    return taskLines;
}

void LaneLog::CompareWaiting()
{
    const QStringList lines = Take();
    Compare("the records afterwards", Relevant(lines), {});
    Need(!lines.contains(PHOTO_SEEN), "a stranger's photo is seen");
}

void LaneLog::CompareEnd(const QStringList& expected)
{
    Compare("the records of the end", Relevant(Take()), expected);
}

void LaneLog::Need(bool isSo, const char* complaint)
{
    if (!isSo)
        m_complaints.append(u"%1, %2: %3"_s.arg(QLatin1String(m_request.Row().id),
                                                QLatin1String(m_fault ? m_fault->id : "plain"),
                                                QString::fromUtf8(complaint)));
}

void LaneLog::Compare(const char* what, const QStringList& found, const QStringList& expected)
{
    const QByteArray difference = TextDiff(expected, found, "line");
    Need(difference.isEmpty(), (what + (": " + difference)).constData());
}

void LaneLog::CompareMissed(qsizetype waits, qsizetype skipped)
{
    static_cast<void>(Take());
    const QString waited = u"the loop waited for com.kestrelix.ozna."_s;
    QStringList causes;
    for (const QString& line : m_missed)
        causes.append(line.contains(waited) ? waited : line.section(u": "_s, -1));
    QStringList expected = QStringList(waits, waited) + QStringList(skipped, u"the clock was put forward"_s);
    causes.sort();
    expected.sort();
    Compare("the missed starts", causes, expected);
}
