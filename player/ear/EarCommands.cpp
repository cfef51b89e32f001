#include "EarCommands.h"

#include "Gong.h"
#include "GongCall.h"
#include "MonitorEar.h"
#include "Outputs.h"
#include "SoundSettings.h"
#include "text/StringUtils.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace
{

constexpr qint64 TEST_STEP_MS = 5000;
constexpr qint64 MEASURE_STEP_MS = 4000; // a gong, and the time to prepare the next
constexpr qint64 MEASURED_GONG_MS = 400;
constexpr int MEASURED_GONGS = 10;
constexpr double NEAR_MS = 200; // what is heard farther from its moment is another sound

// To standard output, at once: who waits for a gong wants to see what is going on. Outputs have the names that their
// makers, or strangers, gave them.
void Print(const QString& line)
{
    QTextStream(stdout) << StringUtils::Harmless(line) << Qt::endl;
}

QString TimeOfDay(double moment_ms)
{
    return QDateTime::fromMSecsSinceEpoch(std::llround(moment_ms)).toString(QStringLiteral("hh:mm:ss.zzz"));
}

QString Signed(double error_ms)
{
    return (error_ms < 0 ? QString() : QStringLiteral("+")) + QString::number(error_ms, 'f', 1);
}

// Of sorted values, at least one: the middle one, or the mean of the middle two.
double Median(const std::vector<double>& sorted)
{
    const size_t half = sorted.size() / 2;
    return sorted.size() % 2 == 1 ? sorted[half] : (sorted[half - 1] + sorted[half]) / 2;
}

// What the settings add to a moment, in words.
QString MovedBy(const SoundSettings& settings)
{
    return settings.offset_ms == 0 ? QString() : QStringLiteral(", moved by Offset_ms=%1").arg(settings.offset_ms);
}

// Of the gongs that were heard, if any were.
void PrintSum(std::vector<double> errors_ms)
{
    if (errors_ms.empty())
        return;
    std::ranges::sort(errors_ms);
    Print(
        QStringLiteral("%1 of %2 heard; error median %3, from %4 to %5 ms, where the server hands them to its output.")
            .arg(errors_ms.size())
            .arg(MEASURED_GONGS)
            .arg(Signed(Median(errors_ms)), Signed(errors_ms.front()), Signed(errors_ms.back())));
}

// The sound nearest to its moment.
std::optional<double> Nearest(const std::vector<double>& begins_ms, qint64 due_ms)
{
    const auto distance = [due = static_cast<double>(due_ms)](double begin_ms) { return std::abs(begin_ms - due); };
    const auto nearest = std::ranges::min_element(begins_ms, {}, distance);
    if (nearest == begins_ms.end() || distance(*nearest) > NEAR_MS)
        return {};
    return *nearest;
}

} // namespace

int EarCommands::ListOutputs(const SoundSettings& settings, const QString& file)
{
    const QList<Outputs::Output> outputs = Outputs::All();
    for (const Outputs::Output& output : outputs)
        Print(QStringLiteral("Output=%1  %2").arg(output.setting, -20).arg(output.name));
    if (outputs.isEmpty())
        Print(QStringLiteral("There is no output: no sound server answers, and there is no sound card."));
    const Outputs::Presence presence = Outputs::PresenceOf(settings.output, outputs);
    Print(QStringLiteral("By %1 sound goes to Output=%2, which %3.")
              .arg(QFileInfo::exists(file) ? QStringLiteral("the settings in ") + file
                                           : QStringLiteral("default, as there is no ") + file + u',',
                   settings.output, QLatin1String(Outputs::WordsOf(presence))));
    return outputs.isEmpty() ? EXIT_FAILURE : EXIT_SUCCESS;
}

int EarCommands::Test(SoundMaker& sound, const SoundSettings& settings)
{
    GongCall gong(sound, Gong::LENGTH_MS);
    const qint64 due_ms = GongCall::NextMoment_ms(TEST_STEP_MS);
    Print(QStringLiteral("A gong at %1%2 on %3, at full volume: volumes that are kept do not count ...")
              .arg(TimeOfDay(static_cast<double>(due_ms)), MovedBy(settings), settings.output));
    const GongCall::Outcome outcome = gong.Play(due_ms);
    if (!outcome.reason.isEmpty())
    {
        Print(QStringLiteral("Not heard on %1: %2").arg(settings.output, outcome.reason));
        return outcome.isInterrupted ? INTERRUPTED : EXIT_FAILURE;
    }
    Print(QStringLiteral("Given to %1, to be heard at %2 by the output's clock, %3 ms from its moment%4.")
              .arg(settings.output, TimeOfDay(static_cast<double>(*outcome.heard_ms)),
                   Signed(static_cast<double>(*outcome.heard_ms - due_ms - settings.offset_ms)), MovedBy(settings)));
    return EXIT_SUCCESS;
}

int EarCommands::Measure(SoundMaker& sound, const SoundSettings& settings)
{
    if (settings.output.section(u':', 0, 0) != QStringLiteral("pulse"))
    {
        Print(QStringLiteral("Nothing can listen to %1: only a sound server lets others hear what it plays.")
                  .arg(settings.output));
        return EXIT_FAILURE;
    }
    MonitorEar ear;
    if (const QString error = ear.Start(settings.output.section(u':', 1)); !error.isEmpty())
    {
        Print(QStringLiteral("Can't listen to what the sound server plays: %1").arg(error));
        return EXIT_FAILURE;
    }
    Print(QStringLiteral("Ten gongs on %1%2: nothing else should play.").arg(settings.output, MovedBy(settings)));
    GongCall gong(sound, MEASURED_GONG_MS);
    std::vector<double> errors_ms;
    bool isInterrupted = false;
    for (int i = 0; i < MEASURED_GONGS && !isInterrupted; ++i)
    {
        const qint64 due_ms = GongCall::NextMoment_ms(MEASURE_STEP_MS);
        const GongCall::Outcome outcome = gong.Play(due_ms);
        const QString due = TimeOfDay(static_cast<double>(due_ms));
        isInterrupted = outcome.isInterrupted;
        if (isInterrupted)
        {
            Print(QStringLiteral("due %1  %2").arg(due, outcome.reason));
            continue;
        }
        if (!outcome.reason.isEmpty())
        {
            Print(QStringLiteral("due %1  can't be played: %2").arg(due, outcome.reason));
            return EXIT_FAILURE;
        }
        const std::optional<double> begin_ms = Nearest(ear.Begins_ms(), due_ms + settings.offset_ms);
        if (!begin_ms)
        {
            Print(QStringLiteral("due %1  not heard").arg(due));
            continue;
        }
        errors_ms.push_back(*begin_ms - static_cast<double>(due_ms + settings.offset_ms));
        Print(QStringLiteral("due %1  heard %2  error %3 ms").arg(due, TimeOfDay(*begin_ms), Signed(errors_ms.back())));
    }
    PrintSum(errors_ms);
    if (isInterrupted)
        return INTERRUPTED;
    return errors_ms.size() == MEASURED_GONGS ? EXIT_SUCCESS : EXIT_FAILURE;
}
