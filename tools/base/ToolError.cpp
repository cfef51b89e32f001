#include "ToolError.h"

#include "text/StringUtils.h"

#include <QStringList>

#include <algorithm>

namespace
{

std::string Shown(const QString& message)
{
    QStringList lines = message.split(u'\n');
    std::ranges::transform(lines, lines.begin(), StringUtils::Harmless);
    return lines.join(u'\n').toStdString();
}

} // namespace

ToolError::ToolError(const QString& message)
    : std::runtime_error(Shown(message))
{
}
