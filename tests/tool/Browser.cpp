#include "Browser.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace
{

constexpr int MIDDLE_WIDTH = 1100;
constexpr int MIDDLE_HEIGHT = 800;
constexpr int PHONE_WIDTH = 390;
constexpr int PHONE_HEIGHT = 844;

const QString PAGE = u"/page.html"_s;

// As root there is no sandbox; what it is shown is our own.
const QStringList OPTIONS{
    u"--headless"_s,
    u"--no-sandbox"_s,
    u"--disable-gpu"_s,
    u"--disable-quic"_s,
    u"--disable-dev-shm-usage"_s,
    u"--no-first-run"_s,
    u"--disable-background-networking"_s,
    u"--disable-component-update"_s,
    u"--disable-sync"_s,
    u"--host-resolver-rules=MAP * ~NOTFOUND"_s,
    u"--window-size=1400,1000"_s,
    u"--remote-debugging-pipe"_s,
    u"about:blank"_s,
};

// What it tells of a page's console.
constexpr std::array CONSOLE{"Runtime.exceptionThrown", "Runtime.consoleAPICalled", "Log.entryAdded"};

} // namespace

Browser::Browser()
    : m_pipe(Program(), QStringList(u"--user-data-dir="_s + m_folder.path()) + OPTIONS, m_folder.path())
{
}

QString Browser::Program()
{
    return QStandardPaths::findExecutable(u"chromium"_s);
}

void Browser::Open(const QByteArray& page, Look look)
{
    QFile file(m_folder.path() + PAGE);
    if (!file.open(QIODevice::WriteOnly) || file.write(page) != page.size() || !file.flush())
        BrowserPipe::Fail(file.errorString().toLocal8Bit());
    m_session.clear();
    if (!m_target.isEmpty())
        Call("Target.closeTarget", {{u"targetId"_s, m_target}});
    m_target = Call("Target.createTarget", {{u"url"_s, u"about:blank"_s}}).value(u"targetId"_s).toString();
    m_session = Call("Target.attachToTarget", {{u"targetId"_s, m_target}, {u"flatten"_s, true}})
                    .value(u"sessionId"_s)
                    .toString();
    for (const char* domain : {"Page.enable", "Runtime.enable", "Log.enable"})
        Call(domain);
    Call("Emulation.setFocusEmulationEnabled", {{u"enabled"_s, true}});
    SetLook(look);
    m_console.clear();
    m_isLoaded = false;
    Call("Page.navigate", {{u"url"_s, QUrl::fromLocalFile(file.fileName()).toString()}});
    while (!m_isLoaded)
        Note(Receive());
}

void Browser::SetLook(Look look)
{
    const bool isPhone = look == Look::PHONE;
    if (isPhone || look == Look::MIDDLE)
        Call("Emulation.setDeviceMetricsOverride", {{u"width"_s, isPhone ? PHONE_WIDTH : MIDDLE_WIDTH},
                                                    {u"height"_s, isPhone ? PHONE_HEIGHT : MIDDLE_HEIGHT},
                                                    {u"deviceScaleFactor"_s, 1},
                                                    {u"mobile"_s, isPhone}});
    const QJsonObject colours{{u"name"_s, u"prefers-color-scheme"_s},
                              {u"value"_s, look == Look::DARK ? u"dark"_s : u"light"_s}};
    Call("Emulation.setEmulatedMedia",
         {{u"media"_s, look == Look::PAPER ? u"print"_s : u"screen"_s}, {u"features"_s, QJsonArray{colours}}});
}

QString Browser::Run(const QByteArray& script)
{
    const QByteArray expression =
        "(() => { let told = ''; const report = (text) => { told = text; };\n" + script + "\nreturn told; })()";
    const QJsonObject reply = Call("Runtime.evaluate", {{u"expression"_s, QString::fromUtf8(expression)}});
    if (reply.contains(u"exceptionDetails"_s))
        BrowserPipe::Fail(QJsonDocument(reply).toJson());
    return reply.value(u"result"_s).toObject().value(u"value"_s).toString();
}

void Browser::Press(const char* key)
{
    const QString name = QLatin1String(key);
    const int code = name == "Tab"_L1 ? '\t' : 0;
    for (const char* type : {"rawKeyDown", "keyUp"})
        Call("Input.dispatchKeyEvent", {{u"type"_s, QLatin1String(type)},
                                        {u"key"_s, name},
                                        {u"code"_s, name},
                                        {u"windowsVirtualKeyCode"_s, code}});
}

QByteArray Browser::Print(double paperWidth, double paperHeight)
{
    Call("Emulation.setEmulatedMedia", {{u"media"_s, u"print"_s}});
    const QJsonObject reply = Call("Page.printToPDF", {{u"paperWidth"_s, paperWidth},
                                                       {u"paperHeight"_s, paperHeight},
                                                       {u"preferCSSPageSize"_s, true},
                                                       {u"printBackground"_s, false}});
    return QByteArray::fromBase64(reply.value(u"data"_s).toString().toLatin1());
}

QJsonObject Browser::Call(const char* method, const QJsonObject& parameters)
{
    QJsonObject message{{u"id"_s, ++m_calls}, {u"method"_s, QLatin1String(method)}, {u"params"_s, parameters}};
    if (!m_session.isEmpty())
        message.insert(u"sessionId"_s, m_session);
    m_pipe.Send(QJsonDocument(message).toJson(QJsonDocument::Compact));
    while (true)
    {
        const QJsonObject received = Receive();
        if (received.value(u"id"_s).toInt() != m_calls)
        {
            Note(received);
            continue;
        }
        if (received.contains(u"error"_s))
            BrowserPipe::Fail(method + QByteArrayLiteral(": ") + QJsonDocument(received).toJson());
        return received.value(u"result"_s).toObject();
    }
}

QJsonObject Browser::Receive()
{
    return QJsonDocument::fromJson(m_pipe.Receive()).object();
}

void Browser::Note(const QJsonObject& message)
{
    const QString method = message.value(u"method"_s).toString();
    m_isLoaded = m_isLoaded || method == "Page.loadEventFired"_L1;
    if (std::ranges::any_of(CONSOLE, [&](const char* name) { return method == QLatin1String(name); }))
        m_console.append(QString::fromUtf8(QJsonDocument(message).toJson(QJsonDocument::Compact)));
}
