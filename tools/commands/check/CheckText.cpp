#include "CheckText.h"

#include "base/Terminal.h"
#include "text/StringUtils.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

const QString ERROR = QStringLiteral("error");
const QString WARNING = QStringLiteral("warning");

QString Severity(const Finding& finding)
{
    return Findings::IsError(finding) ? ERROR : WARNING;
}

QString Name(const Finding& finding)
{
    return QString::fromLatin1(FindingKinds::Row(finding.kind).name);
}

QString Counted(int count, const char* what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(what), count == 1 ? QString() : QStringLiteral("s"));
}

QJsonObject Object(const Finding& finding)
{
    QJsonObject object{{QStringLiteral("line"), finding.line},          {QStringLiteral("column"), finding.column},
                       {QStringLiteral("severity"), Severity(finding)}, {QStringLiteral("kind"), Name(finding)},
                       {QStringLiteral("field"), finding.field},        {QStringLiteral("text"), finding.text},
                       {QStringLiteral("advice"), finding.advice}};
    if (!finding.logged.isEmpty())
        object.insert(QStringLiteral("logged"), finding.logged);
    if (finding.suggestion)
    {
        object.insert(QStringLiteral("suggestion"), *finding.suggestion);
        object.insert(QStringLiteral("replaces"), finding.replacedLines);
    }
    return object;
}

} // namespace

QString CheckText::Lines(const Result& result)
{
    QString text;
    for (const Finding& finding : result.findings.All())
    {
        const bool isError = Findings::IsError(finding);
        const QString severity =
            Terminal::Coloured(Severity(finding), isError ? Terminal::Colour::RED : Terminal::Colour::YELLOW);
        text += QStringLiteral("%1:%2:%3: %4: %5 %6\n")
                    .arg(StringUtils::Harmless(result.file), QString::number(finding.line),
                         QString::number(finding.column), severity, StringUtils::Harmless(finding.Sentence()),
                         Terminal::Coloured(u'[' + Name(finding) + u']', Terminal::Colour::GREY));
    }
    return text + QStringLiteral("%1, %2, %3\n")
                      .arg(Counted(result.lines, "line"), Counted(result.findings.Errors(), "error"),
                           Counted(result.findings.Warnings(), "warning"));
}

QString CheckText::Json(const Result& result)
{
    QJsonArray findings;
    for (const Finding& finding : result.findings.All())
        findings.append(Object(finding));
    const QJsonObject object{{QStringLiteral("file"), result.file},
                             {QStringLiteral("findings"), findings},
                             {QStringLiteral("lines"), result.lines},
                             {QStringLiteral("errors"), result.findings.Errors()},
                             {QStringLiteral("warnings"), result.findings.Warnings()}};
    return QString::fromUtf8(QJsonDocument(object).toJson());
}
