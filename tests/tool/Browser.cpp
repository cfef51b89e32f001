#include "Browser.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <array>

namespace
{

constexpr int PHONE_WIDTH = 390;
constexpr int PHONE_HEIGHT = 844;

const QString PAGE = QStringLiteral("/page.html");

// As root there is no sandbox; what it is shown is our own.
const QStringList OPTIONS{
    QStringLiteral("--headless"),
    QStringLiteral("--no-sandbox"),
    QStringLiteral("--disable-gpu"),
    QStringLiteral("--disable-quic"),
    QStringLiteral("--disable-dev-shm-usage"),
    QStringLiteral("--no-first-run"),
    QStringLiteral("--disable-background-networking"),
    QStringLiteral("--disable-component-update"),
    QStringLiteral("--disable-sync"),
    QStringLiteral("--host-resolver-rules=MAP * ~NOTFOUND"),
    QStringLiteral("--window-size=1400,1000"),
    QStringLiteral("--remote-debugging-pipe"),
    QStringLiteral("about:blank"),
};

// What it tells of a page's console.
constexpr std::array CONSOLE{"Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Log.entryAdded"};

} // namespace

Browser::Browser()
    : m_pipe(Program(), QStringList(QStringLiteral("--user-data-dir=") + m_folder.path()) + OPTIONS, m_folder.path())
{
}

QString Browser::Program()
{
    return QStandardPaths::findExecutable(QStringLiteral("chromium"));
}

void Browser::Open(const QByteArray& page, Look look)
{
    QFile file(m_folder.path() + PAGE);
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size() || !file.flush())
        BrowserPipe::Fail(file.errorString().toLocal8Bit());
    m_session.clear();
    if (!m_target.isEmpty())
        Call("Target.closeTarget", {{QStringLiteral("targetId"), m_target}});
    m_target = Call("Target.createTarget", {{QStringLiteral("url"), QStringLiteral("about:blank")}})
                   .value(QStringLiteral("targetId"))
                   .toString();
    m_session =
        Call("Target.attachToTarget", {{QStringLiteral("targetId"), m_target}, {QStringLiteral("flatten"), true}})
            .value(QStringLiteral("sessionId"))
            .toString();
    for (const char* domain : {"Page.enable", "Runtime.enable", "Log.enable"})
        Call(domain);
    Call("Emulation.setFocusEmulationEnabled", {{QStringLiteral("enabled"), true}});
    SetLook(look);
    m_console.clear();
    m_isLoaded = false;
    Call("Page.navigate", {{QStringLiteral("url"), QUrl::fromLocalFile(file.fileName()).toString()}});
    while (!m_isLoaded)
        Note(Receive());
}

void Browser::SetLook(Look look)
{
    if (look == Look::PHONE)
        Call("Emulation.setDeviceMetricsOverride", {{QStringLiteral("width"), PHONE_WIDTH},
                                                    {QStringLiteral("height"), PHONE_HEIGHT},
                                                    {QStringLiteral("deviceScaleFactor"), 1},
                                                    {QStringLiteral("mobile"), true}});
    const QJsonObject colours{
        {QStringLiteral("name"), QStringLiteral("prefers-color-scheme")},
        {QStringLiteral("value"), look == Look::DARK ? QStringLiteral("dark") : QStringLiteral("light")}};
    Call("Emulation.setEmulatedMedia",
         {{QStringLiteral("media"), look == Look::PAPER ? QStringLiteral("print") : QStringLiteral("screen")},
          {QStringLiteral("features"), QJsonArray{colours}}});
}

QString Browser::Run(const QByteArray& script)
{
    const QByteArray expression =
        "(() => { let told = ''; const report = (text) => { told = text; };\n" + script + "\nreturn told; })()";
    const QJsonObject reply = Call("Runtime.evaluate", {{QStringLiteral("expression"), QString::fromUtf8(expression)}});
    if (reply.contains(QStringLiteral("exceptionDetails")))
        BrowserPipe::Fail(QJsonDocument(reply).toJson());
    return reply.value(QStringLiteral("result")).toObject().value(QStringLiteral("value")).toString();
}

void Browser::Press(const char* key)
{
    const QString name = QLatin1String(key);
    const int code = name == QLatin1String("Tab") ? '\t' : 0;
    for (const char* type : {"rawKeyDown", "keyUp"})
        Call("Input.dispatchKeyEvent", {{QStringLiteral("type"), QLatin1String(type)},
                                        {QStringLiteral("key"), name},
                                        {QStringLiteral("code"), name},
                                        {QStringLiteral("windowsVirtualKeyCode"), code}});
}

QJsonObject Browser::Call(const char* method, const QJsonObject& parameters)
{
    QJsonObject message{{QStringLiteral("id"), ++m_calls},
                        {QStringLiteral("method"), QLatin1String(method)},
                        {QStringLiteral("params"), parameters}};
    if (!m_session.isEmpty())
        message.insert(QStringLiteral("sessionId"), m_session);
    m_pipe.Send(QJsonDocument(message).toJson(QJsonDocument::Compact));
    while (true)
    {
        const QJsonObject received = Receive();
        if (received.value(QStringLiteral("id")).toInt() != m_calls)
        {
            Note(received);
            continue;
        }
        if (received.contains(QStringLiteral("error")))
            BrowserPipe::Fail(method + QByteArrayLiteral(": ") + QJsonDocument(received).toJson());
        return received.value(QStringLiteral("result")).toObject();
    }
}

QJsonObject Browser::Receive()
{
    return QJsonDocument::fromJson(m_pipe.Receive()).object();
}

void Browser::Note(const QJsonObject& message)
{
    const QString method = message.value(QStringLiteral("method")).toString();
    m_isLoaded = m_isLoaded || method == QLatin1String("Page.loadEventFired");
    if (std::ranges::any_of(CONSOLE, [&](const char* name) { return method == QLatin1String(name); }))
        m_console.append(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}
