#include "ToolHelp.h"

#include <QRegularExpression>

namespace
{

const QString HELP = QStringLiteral("--help");

QStringList Rows(const QString& text, const QString& pattern)
{
    const QRegularExpression row(pattern, QRegularExpression::MultilineOption);
    QStringList names;
    QRegularExpressionMatchIterator matches = row.globalMatch(text);
    while (matches.hasNext())
        names.append(matches.next().captured(1));
    return names;
}

} // namespace

QStringList ToolHelp::Commands(const CommandCall& call)
{
    return Rows(call.Run({HELP}).output, QStringLiteral("^  ([a-z]+) "));
}

QStringList ToolHelp::Options(const CommandCall& call, const QString& command)
{
    return Rows(call.Run({command, HELP}).output, QStringLiteral("^  (--?[a-z][a-z-]*)[ \n]"));
}
