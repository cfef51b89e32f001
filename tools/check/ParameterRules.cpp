#include "Columns.h"
#include "Rules.h"
#include "meant/Meant.h"
#include "words/Kinds.h"

#include "tasks/CpuFreq.h"
#include "text/Parameter.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace ScheduleFields;

namespace
{

// The FM band, in MHz; 0 switches the radio off.
constexpr double FIRST_FREQUENCY = 87.5;
constexpr double LAST_FREQUENCY = 108;

constexpr int NO_LIMIT = std::numeric_limits<int>::max();

// The numbers that a parameter can be of use with.
struct Range
{
    ParameterRole role;
    int least;
    int most;
    FindingKind kind;
    const char* text;
    const char* advice;
};

constexpr std::array RANGES{
    Range{ParameterRole::PLAYER_VOLUME, -1, 100, FindingKind::VOLUME_RANGE, "a volume goes from 0 to 100",
          "write 0 to 100, or -1 to leave the volume as it is"},
    Range{ParameterRole::MASTER_VOLUME, 0, 100, FindingKind::VOLUME_RANGE, "a volume goes from 0 to 100",
          "write 0 to 100"},
    Range{ParameterRole::INTENSITY, 0, NO_LIMIT, FindingKind::LIGHT_RANGE, "a light has no negative intensity",
          "write 0 for off, or more"},
    Range{ParameterRole::MASK, 0, 255, FindingKind::MASK_RANGE, "only the low eight bits of a mask are sent",
          "write 0 to 255"},
    Range{ParameterRole::SWITCH, 0, Parameter::ON, FindingKind::SWITCH_VALUE, "every number but 1 means off",
          "write 1 for on, 0 for off"},
    Range{ParameterRole::PHOTO_INTERVAL, 0, NO_LIMIT, FindingKind::PHOTO_SERIES, "an interval is not negative",
          "write the seconds between two photos"},
    Range{ParameterRole::PHOTO_NUMBER, 1, NO_LIMIT, FindingKind::PHOTO_SERIES,
          "a series of 0 photos takes one, a negative one never ends", "write 1 or more"},
};

// What a parameter of that role that is no number should be.
struct Advice
{
    ParameterRole role;
    const char* text;
};

constexpr std::array ADVICE{
    Advice{ParameterRole::PLAYER_VOLUME, "write a volume from 0 to 100, or -1 to leave it as it is"},
    Advice{ParameterRole::MASTER_VOLUME, "write a volume from 0 to 100"},
    Advice{ParameterRole::INTENSITY, "write a whole number, 0 for off"},
    Advice{ParameterRole::FREQUENCY, "write the frequency in MHz, as 98.5"},
    Advice{ParameterRole::MASK, "write a decimal number from 0 to 255"},
    Advice{ParameterRole::SWITCH, "write 1 for on, 0 for off"},
    Advice{ParameterRole::PHOTO_INTERVAL, "write interval in seconds,number of photos"},
    Advice{ParameterRole::PHOTO_NUMBER, "write interval in seconds,number of photos"},
    Advice{ParameterRole::PDD_NUMBER, "write 1, the one action that there is"},
};

// place: of the parameter that it is about.
Finding New(const Entry& entry, qsizetype place, FindingKind kind, const QString& text, const QString& advice)
{
    return {entry.line.number,
            kind,
            Entry::FieldName(FIELD_PARAMETERS),
            text,
            advice,
            Columns::OfParameter(entry.line.text, place)};
}

bool IsWhole(const QString& text)
{
    bool isNumber = true;
    static_cast<void>(Parameter::ToInt(text, 0, [&] { isNumber = false; }));
    return isNumber;
}

QString AdviseReadable(ParameterRole role)
{
    const auto* const advice = std::ranges::find(ADVICE, role, &Advice::role);
    return advice != ADVICE.end() ? QString::fromLatin1(advice->text) : QStringLiteral("correct it");
}

// What "on" and "off" mean; empty where nobody knows.
struct Switched
{
    ParameterRole role;
    const char* on;
    const char* off;
};

constexpr std::array SWITCHED{
    Switched{ParameterRole::SWITCH, "1", "0"},
    Switched{ParameterRole::INTENSITY, "100", "0"},
    Switched{ParameterRole::FREQUENCY, "", "0"},
    Switched{ParameterRole::MASTER_VOLUME, "", "0"},
};

// What was meant by a parameter that the task cannot read; empty where nobody knows.
QString MeantBy(const QString& text, ParameterRole role)
{
    QString number = Meant::Number(text);
    if (!number.isEmpty() && (role == ParameterRole::FREQUENCY || IsWhole(number)))
        return number;
    const auto* const row = std::ranges::find(SWITCHED, role, &Switched::role);
    const QString meant = row != SWITCHED.end() ? Meant::Switch(text) : QString();
    return meant.isEmpty() ? meant : QString::fromLatin1(meant == QLatin1String("1") ? row->on : row->off);
}

Finding Fallback(const Entry& entry, qsizetype place, ParameterRole role, const QString& text)
{
    Finding finding = New(entry, place, FindingKind::FALLBACK, text, AdviseReadable(role));
    const QString given = entry.parameters.value(place);
    const QString meant = MeantBy(given, role);
    if (!meant.isEmpty() && meant != given)
    {
        finding.advice = QStringLiteral("write ") + meant;
        finding.suggestion = entry.WithParameter(place, meant);
    }
    return finding;
}

void LookAtFallbacks(const Entry& entry, std::span<const ParameterRole> roles, Findings& findings)
{
    if (entry.Is(TASK_SET_CPU_FREQ))
    {
        if (entry.parameters.value(0) != QString::number(CpuFreq::FREQUENCY_MHZ))
            findings.Add(
                New(entry, 0, FindingKind::CPU_FREQUENCY,
                    QStringLiteral("the number is not used: %1 MHz is asked for, always").arg(CpuFreq::FREQUENCY_MHZ),
                    QStringLiteral("write %1").arg(CpuFreq::FREQUENCY_MHZ)));
        return;
    }
    for (const TaskWarning& warning : entry.line.warnings)
    {
        if (warning.parameter != TaskWarning::NO_PARAMETER)
            findings.Add(
                Fallback(entry, warning.parameter, roles[static_cast<size_t>(warning.parameter)], warning.text));
    }
    // The one kind that falls back without a word.
    if (entry.Is(TASK_CAMERA) && !IsWhole(entry.parameters.value(0)))
        findings.Add(
            Fallback(entry, 0, ParameterRole::SWITCH,
                     QStringLiteral("'%1' is no number: the camera is switched off").arg(entry.parameters.value(0))));
}

void LookAtCount(const Entry& entry, std::span<const ParameterRole> roles, Findings& findings)
{
    const auto used = static_cast<qsizetype>(roles.size());
    if (entry.parameters.size() <= used)
        return;
    const QStringList kept = entry.parameters.first(used);
    Finding finding =
        New(entry, used, FindingKind::IGNORED_PARAMETERS,
            QStringLiteral("\"%1\" is ignored: %2")
                .arg(entry.parameters.mid(used).join(QLatin1Char(PARAMETER_SEPARATOR)),
                     used == 0   ? QStringLiteral("%1 takes no parameter").arg(entry.TaskName())
                     : used == 1 ? QStringLiteral("%1 reads one parameter").arg(entry.TaskName())
                                 : QStringLiteral("%1 reads %2 parameters").arg(entry.TaskName()).arg(used)),
            QStringLiteral("take it out; no name may have a \",\""));
    // The fraction of a frequency.
    const QString point = Meant::Number(entry.parameters.join(QLatin1Char(PARAMETER_SEPARATOR)));
    if (entry.Is(TASK_PLAY_RADIO_FM))
        finding.advice = QStringLiteral("write the fraction of a frequency with a point");
    if (entry.Is(TASK_PLAY_RADIO_FM) && !point.isEmpty())
    {
        finding.advice += QStringLiteral(": ") + point;
        finding.suggestion = entry.With(FIELD_PARAMETERS, point);
    }
    else if (used > 0)
        finding.suggestion = entry.With(FIELD_PARAMETERS, kept.join(QLatin1Char(PARAMETER_SEPARATOR)));
    else
        finding.suggestion = entry.line.text.section(QLatin1Char(FIELD_SEPARATOR), 0, FIELD_TASK);
    findings.Add(finding);
}

void LookAtValue(const Entry& entry, qsizetype place, ParameterRole role, Findings& findings)
{
    const QString& text = entry.parameters[place];
    if (role == ParameterRole::FREQUENCY)
    {
        bool isNumber = false;
        const double frequency = text.toDouble(&isNumber);
        if (isNumber && frequency != 0 && !(frequency >= FIRST_FREQUENCY && frequency <= LAST_FREQUENCY))
            findings.Add(New(entry, place, FindingKind::FREQUENCY_RANGE,
                             QStringLiteral("%1 MHz is not in the FM band").arg(text),
                             QStringLiteral("write %1 to %2, or 0 for off").arg(FIRST_FREQUENCY).arg(LAST_FREQUENCY)));
    }
    if ((role == ParameterRole::FILE_NAME || role == ParameterRole::PORT_AND_PATH) && text.isEmpty())
        findings.Add(New(entry, place, FindingKind::NO_FILE_NAME,
                         QStringLiteral("nothing is named that could be played"),
                         role == ParameterRole::FILE_NAME ? QStringLiteral("write the file's name first")
                                                          : QStringLiteral("write port and path, as 8554/live")));
    const auto* const range = std::ranges::find(RANGES, role, &Range::role);
    if (range == RANGES.end() || !IsWhole(text))
        return;
    const int value = text.toInt();
    if (value < range->least || value > range->most)
        findings.Add(New(entry, place, range->kind, QStringLiteral("%1: %2").arg(text, QLatin1String(range->text)),
                         QString::fromLatin1(range->advice)));
}

} // namespace

void Rules::FindOddParameters(const std::vector<Entry>& entries, Findings& findings)
{
    for (const Entry& entry : entries)
    {
        if (entry.GetAction() == nullptr)
            continue;
        const auto roles = Kinds::Of(entry.GetAction()->m_task->m_type).Roles();
        LookAtFallbacks(entry, roles, findings);
        LookAtCount(entry, roles, findings);
        for (size_t i = 0; i < roles.size() && static_cast<qsizetype>(i) < entry.parameters.size(); ++i)
            LookAtValue(entry, static_cast<qsizetype>(i), roles[i], findings);
    }
}
