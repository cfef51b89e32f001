#include "EntryText.h"

#include "PageNotes.h"
#include "engine/Workspace.h"
#include "words/EventText.h"
#include "words/Kinds.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace
{

// Widths, in hundredths of the height of the text, of ordinary fonts that are wide.
constexpr int CHARACTER_WIDTH = 62;
constexpr int NARROW_WIDTH = 40;
constexpr int BROAD_WIDTH = 98;
constexpr QLatin1String NARROW(":;.,'|!ijl");
constexpr QLatin1String BROAD("mwMW@%");
constexpr int BLANK_WIDTH = 32;
constexpr int ICON_WIDTH = 90;
constexpr int MARK_WIDTH = 260; // around its word, with its sign

// Of one of seven columns, where the page is as narrow as columns can be, and as a wide one can be.
constexpr WeekLayout::PerWidth<int> COLUMN_WIDTHS{970, 1220};
constexpr int WEEK_COLUMNS = 7;

constexpr int MOST_CHARACTERS = 45;

// Three lines are as high as two rows; an entry's frame takes a little as well.
constexpr int ROW_HEIGHT = 12;
constexpr int LINE_HEIGHT = 8;
constexpr int FRAME_HEIGHT = 3;

int Width(const QString& word)
{
    return std::accumulate(word.begin(), word.end(), 0, [](int width, QChar character) {
        if (NARROW.contains(character))
            return width + NARROW_WIDTH;
        return width + (BROAD.contains(character) ? BROAD_WIDTH : CHARACTER_WIDTH);
    });
}

// Some browsers break a line behind a "/", others do not.
enum class Slash : std::uint8_t
{
    HOLDS,
    BREAKS,
};

// The widths of the parts of text behind which a line may be broken.
void AppendWords(QList<int>& widths, const QString& text, Slash slash)
{
    static const QRegularExpression HELD(QStringLiteral("[^ \u2026-]*[\u2026-]+|[^ \u2026-]+"));
    static const QRegularExpression BROKEN(QStringLiteral("[^ /\u2026-]*[/\u2026-]+|[^ /\u2026-]+"));
    QRegularExpressionMatchIterator words = (slash == Slash::HOLDS ? HELD : BROKEN).globalMatch(text);
    while (words.hasNext())
        widths.append(Width(words.next().captured()));
}

// How many lines words of these widths take, with a blank between them.
int Lines(const QList<int>& widths, int room)
{
    int lines = widths.isEmpty() ? 0 : 1;
    int used = 0;
    for (int width : widths)
    {
        if (used > 0 && used + width > room)
        {
            ++lines;
            used = 0;
        }
        // A long word is broken anywhere.
        for (; width > room; width -= room)
            ++lines;
        used += width + BLANK_WIDTH;
    }
    return lines;
}

} // namespace

QString EntryText::Subject(const Event& event, const PageNotes& notes)
{
    const QString subject = event.requests.isEmpty()
                                ? notes.wanted.value(event.lineNumber, QStringLiteral("line %1").arg(event.lineNumber))
                                : EventText::Subject(event);
    const QLatin1String server(Workspace::SERVER);
    const qsizetype place = subject.indexOf(server);
    return place < 0 ? subject : subject.mid(place + server.size() + 1);
}

QString EntryText::Shortened(const QString& text)
{
    if (text.size() <= MOST_CHARACTERS)
        return text;
    // The end tells files of one kind apart.
    const qsizetype half = MOST_CHARACTERS / 2;
    return text.first(MOST_CHARACTERS - half) + u'\u2026' + text.last(half - 1);
}

WeekLayout::Room EntryText::RoomFor(const Event& event, const QString& time, const QString& until,
                                    const QStringList& marks, const PageNotes& notes, int columns)
{
    const int share = std::clamp(columns, 1, WEEK_COLUMNS);
    const QString subject = Subject(event, notes);
    const Kind& kind = Kinds::Of(event.type);
    const auto widthsOf = [&](Slash slash) {
        QList<int> widths;
        AppendWords(widths, time, slash);
        if (kind.hasIcon && !subject.isEmpty())
            widths.append(ICON_WIDTH);
        else
            AppendWords(widths, QString::fromLatin1(kind.label), slash);
        AppendWords(widths, Shortened(subject), slash);
        return widths;
    };
    const QList<int> held = widthsOf(Slash::HOLDS);
    const QList<int> broken = widthsOf(Slash::BREAKS);
    QList<int> markWidths;
    for (const QString& mark : marks)
        markWidths.append(Width(mark) + MARK_WIDTH);
    WeekLayout::PerWidth<int> rows{};
    std::ranges::transform(COLUMN_WIDTHS, rows.begin(), [&](int width) {
        const int room = width * WEEK_COLUMNS / share;
        const int lines = std::max(Lines(held, room), Lines(broken, room)) + Lines(markWidths, room);
        return (lines * LINE_HEIGHT + FRAME_HEIGHT + ROW_HEIGHT - 1) / ROW_HEIGHT;
    });
    QList<int> all = broken + markWidths;
    AppendWords(all, until, Slash::BREAKS);
    const int paperWidth = std::accumulate(all.begin(), all.end(), static_cast<int>(all.size()) * BLANK_WIDTH);
    return {rows, paperWidth};
}
