#include "ToolHelp.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

const QString HELP = u"--help"_s;

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
    return Rows(call.Run({HELP}).output, u"^  ([a-z]+) "_s);
}

QStringList ToolHelp::Options(const CommandCall& call, const QString& command)
{
    return Rows(call.Run({command, HELP}).output, u"^  (--?[a-z][a-z-]*)[ \n]"_s);
}
