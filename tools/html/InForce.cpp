#include "InForce.h"

#include "EntryText.h"
#include "PageNotes.h"
#include "base/Moment.h"
#include "engine/RehearsalResult.h"
#include "text/StringUtils.h"
#include "words/Kinds.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace
{

const QString OFF = QStringLiteral("off");
const QString ON = QStringLiteral("on");

// What one event begins or ends.
struct Step
{
    qint64 moment_ms;
    bool begins;
    const Event* event;
};

std::vector<Step> Steps(const RehearsalResult& run)
{
    std::vector<Step> steps;
    for (const Event& event : run.events)
    {
        const bool isSetting = event.type == TASK_VOLUME || event.type == TASK_LIGHT;
        if (isSetting && event.Acts() && !event.requests.isEmpty())
            steps.push_back({std::max(event.moment_ms, run.begin_ms), true, &event});
        if (!WeekLayout::IsBar(event))
            continue;
        steps.push_back({std::max(event.begin_ms, run.begin_ms), true, &event});
        if (event.end_ms != Event::OPEN)
            steps.push_back({std::max(event.end_ms, event.begin_ms), false, &event});
    }
    std::ranges::stable_sort(steps, {}, &Step::moment_ms);
    return steps;
}

// What is heard besides the radio: "Playlist christmas".
QString Heard(const Event& event, const QString& subject)
{
    const QString label = QLatin1String(Kinds::Of(event.type).label);
    return event.type == TASK_ENABLE_AUX || subject.isEmpty() ? label : label + u' ' + subject;
}

// Follows the steps.
class State final
{
public:
    explicit State(const PageNotes& notes)
        : m_notes(notes)
        , m_volume(notes.wanted.value(notes.volumeLine))
        , m_light(notes.wanted.value(notes.lightLine))
    {
    }

    void Take(const Step& step)
    {
        const QString subject = EntryText::Subject(*step.event, m_notes);
        switch (step.event->type)
        {
        case TASK_VOLUME: m_volume = subject; return;
        case TASK_LIGHT: m_light = subject; return;
        default: Play(step, subject); return;
        }
    }

    [[nodiscard]] QStringList Texts() const
    {
        QStringList radio;
        QStringList heard;
        for (const Playing& playing : m_playing)
        {
            if (playing.event->type == TASK_PLAY_RADIO_FM)
                radio.append(playing.text);
            else
                heard.append(playing.text);
        }
        QStringList texts{m_volume, m_light, radio.isEmpty() ? OFF : radio.join(QStringLiteral(", ")),
                          heard.join(QStringLiteral(", "))};
        std::ranges::transform(texts, texts.begin(), StringUtils::Harmless);
        return texts;
    }

private:
    struct Playing
    {
        const Event* event;
        QString text;
    };

    void Play(const Step& step, const QString& subject)
    {
        if (!step.begins)
        {
            std::erase_if(m_playing, [&](const Playing& playing) { return playing.event == step.event; });
            return;
        }
        const bool isRadio = step.event->type == TASK_PLAY_RADIO_FM;
        m_playing.push_back({step.event, isRadio ? (subject.isEmpty() ? ON : subject) : Heard(*step.event, subject)});
    }

    const PageNotes& m_notes;
    QString m_volume;
    QString m_light;
    std::vector<Playing> m_playing; // in the order of their beginnings
};

} // namespace

InForce::InForce(const RehearsalResult& run, const PageNotes& notes)
    : m_begin_ms(run.begin_ms)
{
    QHash<QStringList, size_t> known;
    State state(notes);
    const auto append = [&](qint64 moment_ms) {
        const QStringList texts = state.Texts();
        const size_t place = known.value(texts, m_states.size());
        if (place == m_states.size())
        {
            known.insert(texts, place);
            m_states.push_back(texts);
        }
        // Only the last one of a moment can be seen.
        if (!m_changes.empty() && m_changes.back().moment_ms == moment_ms)
            m_changes.back().state = place;
        else if (m_changes.empty() || m_changes.back().state != place)
            m_changes.push_back({moment_ms, place});
    };
    append(m_begin_ms);
    for (const Step& step : Steps(run))
    {
        state.Take(step);
        append(step.moment_ms);
    }
}

QString InForce::Of(const WeekLayout::Day& day) const
{
    const qint64 begin_ms = std::max(day.begin_ms, m_begin_ms);
    auto change = std::ranges::upper_bound(m_changes, begin_ms, {}, &Change::moment_ms);
    QString text = QStringLiteral("0:%1").arg((change == m_changes.begin() ? change : change - 1)->state);
    for (; change != m_changes.end() && change->moment_ms < day.end_ms; ++change)
        text +=
            QStringLiteral(" %1:%2").arg(QTime(0, 0).secsTo(Moment::LocalTime(change->moment_ms))).arg(change->state);
    return text;
}

QByteArray InForce::Table() const
{
    QJsonArray table;
    for (const QStringList& texts : m_states)
        table.append(QJsonArray::fromStringList(texts));
    // No text ends the element that the page has it in.
    return QJsonDocument(table).toJson(QJsonDocument::Compact).replace('<', "\\u003c");
}
