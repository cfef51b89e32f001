#include "FaultReport.h"

#include <QDir>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QString RESULTS = QStringLiteral(OZNA_BUILD_DIR "/tests/faults/results/");
const QString NO_SIGNAL = u"–"_s;
constexpr char NO_FAILURE_LOGGED = '0';
constexpr int MS_PER_S = 1000;

void WriteResult(const QString& name, const QString& content)
{
    QSaveFile file(RESULTS + name);
    if (!QDir().mkpath(RESULTS) || !file.open(QIODevice::WriteOnly) || file.write(content.toUtf8()) < 0 ||
        !file.commit())
        qFatal("cannot write %s: %s", qPrintable(file.fileName()), qPrintable(file.errorString()));
}

// The level of the gravest record that an accepted request would not have brought.
char FailureLevel(const QStringList& found, const QStringList& accepted)
{
    char level = NO_FAILURE_LOGGED;
    for (const QString& line : found)
    {
        const char own = line.front().toLatin1();
        if (!accepted.contains(line) && (level == NO_FAILURE_LOGGED || own < level))
            level = own;
    }
    return level;
}

} // namespace

FaultReport::FaultReport(const Request& request)
    : m_request(request)
{
}

void FaultReport::Add(const Fault& fault, const Expectation& expected, const QStringList& taskLines)
{
    const QStringList accepted = Expectation(m_request, nullptr, false).taskLines + m_request.Ended();
    QString symbol;
    symbol += QLatin1Char(FailureLevel(taskLines, accepted));
    symbol += QLatin1Char(fault.done);
    symbol += QLatin1Char(expected.isNextMissed ? 'm' : 't');
    const bool needsPhoto =
        fault.outcome != Outcome::ACCEPTED && expected.signalsToEnd > 0 && m_request.Row().wait != Wait::PLAYBACK;
    if (needsPhoto)
        symbol += u'p';
    m_cells.append({QString::fromLatin1(fault.id), symbol, taskLines});
}

void FaultReport::AddIdle(const Fault& fault)
{
    m_cells.append({QString::fromLatin1(fault.id), NO_SIGNAL, {}});
}

QString FaultReport::Row() const
{
    QString row = u"| %1 |"_s.arg(QLatin1String(m_request.Row().id));
    for (const Cell& cell : m_cells)
        row += u" %1 |"_s.arg(cell.symbol);
    return row + u" %1 |\n"_s.arg(QLatin1String(m_request.Row().lost));
}

// Faults that bring the same records stand together, in the order of the first of them.
QString FaultReport::Section() const
{
    QString section =
        u"\n### %1\n\n`%2`, time-out %3 s.\n"_s.arg(QLatin1String(m_request.Row().id), m_request.Schedule())
            .arg(m_request.Row().timeout_ms / MS_PER_S);
    QList<Cell> cells = m_cells;
    cells.removeIf([](const Cell& cell) { return cell.symbol == NO_SIGNAL; });
    while (!cells.isEmpty())
    {
        const QStringList lines = cells.first().lines;
        QStringList faults;
        for (const Cell& cell : std::as_const(cells))
        {
            if (cell.lines == lines)
                faults.append(cell.fault);
        }
        cells.removeIf([&](const Cell& cell) { return cell.lines == lines; });
        section += u"\n- %1"_s.arg(faults.join(u", "_s));
        if (lines.isEmpty())
            section += u": nothing\n"_s;
        else
            section += u":\n\n  ```\n  %1\n  ```\n"_s.arg(lines.join(u"\n  "_s));
    }
    return section;
}

void FaultReport::Write(int number) const
{
    const QString name = u"%1"_s.arg(number, 2, 10, '0'_L1);
    WriteResult(name + u".row"_s, Row());
    WriteResult(name + u".section"_s, Section());
}

void FaultReport::WriteLegend()
{
    QString legend;
    QString head = u"| Request |"_s;
    QString rule = u"| --- |"_s;
    for (const Fault& fault : FAULTS)
    {
        legend += u"- **%1**: %2\n"_s.arg(QLatin1String(fault.id), QLatin1String(fault.meaning));
        head += u" %1 |"_s.arg(QLatin1String(fault.id));
        rule += u" --- |"_s;
    }
    WriteResult(u"legend"_s, legend);
    WriteResult(u"head"_s, head + u" Not done means |\n"_s + rule + u" --- |\n"_s);
}
