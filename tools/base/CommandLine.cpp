#include "CommandLine.h"

#include "Terminal.h"
#include "ToolError.h"

#include <algorithm>

namespace
{

const QString PROGRAM = QStringLiteral("ozna-schedule");
const QString HELP = QStringLiteral("help");
const QString MORE = QStringLiteral("...");
constexpr int OPTION_WIDTH = 22;

QString Dashed(const QString& name)
{
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

} // namespace

CommandLine::CommandLine(const QString& command, const QString& summary, const QStringList& operands)
    : m_command(command)
    , m_summary(summary)
    , m_operands(operands)
{
    m_parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    m_parser.addOption({{QStringLiteral("h"), HELP}, {}});
}

void CommandLine::AddFlag(const QString& name, const QString& description)
{
    m_parser.addOption({name, description});
    m_rows.append({QStringLiteral("--") + name, description});
}

void CommandLine::AddValue(const QString& name, const QString& value, const QString& description,
                           const QString& fallback)
{
    m_parser.addOption({name, description, value, fallback});
    m_rows.append({Dashed(name) + u' ' + value, description});
}

bool CommandLine::Parse(const QStringList& arguments)
{
    const QString advice = QStringLiteral("%1\nsee %2 %3 --help");
    if (!m_parser.parse(QStringList(PROGRAM) + arguments))
        throw ToolError(advice.arg(m_parser.errorText(), PROGRAM, m_command));
    if (Has(HELP))
    {
        Terminal::Print(Help());
        return false;
    }
    const bool isOpen = !m_operands.isEmpty() && m_operands.last().endsWith(MORE);
    const QStringList given = Operands();
    if (given.size() < m_operands.size() && !m_operands[given.size()].startsWith(u'['))
        throw ToolError(advice.arg(m_operands[given.size()] + QStringLiteral(" is missing"), PROGRAM, m_command));
    if (given.size() > m_operands.size() && !isOpen)
        throw ToolError(
            advice.arg(QStringLiteral("unexpected argument: ") + given[m_operands.size()], PROGRAM, m_command));
    return true;
}

int CommandLine::Number(const QString& name, int least, int most) const
{
    bool isNumber = false;
    const int number = Value(name).toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw ToolError(QStringLiteral("%1: a number from %2 to %3 is expected, not \"%4\"")
                            .arg(Dashed(name), QString::number(least), QString::number(most), Value(name)));
    return number;
}

QString CommandLine::Help() const
{
    QString text =
        QStringLiteral("Usage: %1 %2 [OPTIONS] %3\n\n%4\n").arg(PROGRAM, m_command, m_operands.join(u' '), m_summary);
    if (!m_rows.isEmpty())
        text += u'\n';
    for (const auto& [option, meaning] : m_rows)
    {
        const QString indented = QString(meaning).replace(u'\n', u'\n' + QString(OPTION_WIDTH + 2, u' '));
        text += QStringLiteral("  %1%2\n")
                    .arg(option.leftJustified(std::max<qsizetype>(OPTION_WIDTH, option.size() + 1)), indented);
    }
    return text;
}
