#include "SimulatorTest.h"
#include "Suite.h"

#include <QDBusMetaType>
#include <QElapsedTimer>
#include <QPoint>

using namespace Qt::StringLiterals;

// The control interface of the simulated device: a test of the daemon can only be as right as its peers are.
class SimulatorScript : public SimulatorTest
{
    Q_OBJECT

private Q_SLOTS:
    void ScriptedValuesKeepTheirTypes();
    void ScriptedAnswersComeInTheirOrder();
    void ASilentMethodNeverAnswers();
    void AnAnswerCanBeHeldBack();
    void AScriptedExitEndsItInTheMiddleOfTheCall();
    void WhoDiesHasAnswered();
    void ASignalGoesBesideAnAnswer_data();
    void ASignalGoesBesideAnAnswer();
    void RecordsEachCallAsItIsTyped();
    void ASlipInAScriptIsAnError_data();
    void ASlipInAScriptIsAnError();

public Q_SLOTS:
    void OnSignal(const QString& file) { m_events.append(file); }
    void OnAnswer() { m_events.append(u"answer"_s); }

private:
    QStringList m_events;
};

void SimulatorScript::ScriptedValuesKeepTheirTypes()
{
    Start();
    const QVariantList values{QVariant::fromValue(uchar(7)),
                              QVariant::fromValue(short(-2)),
                              qlonglong(-5),
                              2.5,
                              u"text"_s,
                              QStringList{u"a"_s, u"b"_s},
                              QVariantMap{{u"key"_s, 1U}},
                              QPoint(3, 4),
                              QVariantList{},
                              QVariant::fromValue(QDBusVariant(u"nested"_s))};
    SetAnswer("reply", values, 0, 0);
    // Twice: what was sent once has not been used up.
    for (int i = 0; i < 2; ++i)
    {
        const QDBusMessage reply = Call("sound", PLAY_AUX);
        QCOMPARE(reply.signature(), u"ynxdsasa{sv}(ii)avv"_s);
        QCOMPARE(reply.arguments().value(5).toStringList(), values.value(5).toStringList());
        QCOMPARE(qdbus_cast<QVariantMap>(reply.arguments().value(6)), values.value(6).toMap());
        QCOMPARE(qdbus_cast<QPoint>(reply.arguments().value(7)), QPoint(3, 4));
    }
}

void SimulatorScript::ScriptedAnswersComeInTheirOrder()
{
    Start();
    SetAnswer("reply", {1}, 0, 2);
    SetAnswer("error", {u"com.example.Error"_s, u"broken"_s}, 0, 1);
    SetAnswer("reply", {2}, 0, 0);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{1});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{1});
    const QDBusMessage error = Call("sound", PLAY_AUX);
    QCOMPARE(error.errorName(), u"com.example.Error"_s);
    QCOMPARE(error.errorMessage(), u"broken"_s);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{2});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{2});
    SetAnswer("reply", {3}, 0, 1);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{3});
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
    SetAnswer("reply", {4}, 0, 0);
    Order("ClearAnswers");
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

void SimulatorScript::ASilentMethodNeverAnswers()
{
    constexpr int SHORT_MS = 300;
    Start();
    SetAnswer("silence", {}, 0, 1);
    QCOMPARE(Call("sound", PLAY_AUX, {}, SHORT_MS).errorName(), u"org.freedesktop.DBus.Error.NoReply"_s);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

void SimulatorScript::AnAnswerCanBeHeldBack()
{
    constexpr int DELAY_MS = 400;
    Start();
    SetAnswer("reply", {9}, DELAY_MS, 1);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{9});
    QVERIFY2(timer.elapsed() >= DELAY_MS, qPrintable(QString::number(timer.elapsed())));
}

void SimulatorScript::AScriptedExitEndsItInTheMiddleOfTheCall()
{
    Start();
    SetAnswer("exit", {}, 0, 1);
    QCOMPARE(Call("sound", PLAY_AUX).errorName(), u"org.freedesktop.DBus.Error.NoReply"_s);
    QVERIFY(ExitCode(Process()) > 0);
}

void SimulatorScript::WhoDiesHasAnswered()
{
    Start();
    SetAnswer("die", {3}, 0, 1);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{3});
    QVERIFY(ExitCode(Process()) > 0);
}

void SimulatorScript::ASignalGoesBesideAnAnswer_data()
{
    QTest::addColumn<bool>("isFirst");
    QTest::addColumn<int>("gap_ms");
    QTest::newRow("right before") << true << 0;
    QTest::newRow("before") << true << 200;
    QTest::newRow("right behind") << false << 0;
    QTest::newRow("behind") << false << 200;
}

void SimulatorScript::ASignalGoesBesideAnAnswer()
{
    QFETCH(bool, isFirst);
    QFETCH(int, gap_ms);
    Start();
    m_events.clear();
    const QString sound = u"sound"_s;
    QVERIFY(Bus().Connection().connect(Service(sound), ObjectPath(sound), SOUND_INTERFACE, u"PlayFileCompleted"_s, this,
                                       SLOT(OnSignal(QString))));
    Order("SetSignal",
          {SOUND_INTERFACE, PLAY_AUX, u"PlayFileCompleted"_s, QVariant(QVariantList{u"end"_s}), isFirst, gap_ms, 1});
    // From the call on, as a busy machine may hear of the first late: less than the gap it never takes.
    QElapsedTimer timer;
    timer.start();
    // The receiver is known before the call is sent: a watcher made afterwards may come too late for the bus's order.
    const QDBusMessage call =
        QDBusMessage::createMethodCall(Service(sound), ObjectPath(sound), SOUND_INTERFACE, PLAY_AUX);
    QVERIFY(Bus().Connection().callWithCallback(call, this, SLOT(OnAnswer())));
    QVERIFY(WaitUntil([this] { return m_events.size() == 2; }));
    QVERIFY2(timer.elapsed() >= gap_ms, qPrintable(QString::number(timer.elapsed())));
    QStringList expected{u"end"_s, u"answer"_s};
    if (!isFirst)
        expected.swapItemsAt(0, 1);
    QCOMPARE(m_events, expected);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

void SimulatorScript::RecordsEachCallAsItIsTyped()
{
    Start();
    const qint64 before_ms = QDateTime::currentMSecsSinceEpoch();
    static_cast<void>(Call("sound", u"SetAmplifiers"_s, {QVariant::fromValue(uchar(44))}));
    static_cast<void>(Call("light", u"Switch"_s, {true}));
    const qint64 after_ms = QDateTime::currentMSecsSinceEpoch();

    const QList<QVariantMap> calls = Calls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls[0].value(u"interface"_s).toString(), SOUND_INTERFACE);
    QCOMPARE(calls[0].value(u"method"_s).toString(), u"SetAmplifiers"_s);
    QCOMPARE(calls[0].value(u"signature"_s).toString(), u"y"_s);
    QCOMPARE(qdbus_cast<QVariantList>(calls[0].value(u"arguments"_s)), QVariantList{QVariant::fromValue(uchar(44))});
    QCOMPARE(calls[1].value(u"method"_s).toString(), u"Switch"_s);
    for (const QVariantMap& call : calls)
    {
        const qint64 time_ms = call.value(u"time_ms"_s).toLongLong();
        QVERIFY(time_ms >= before_ms && time_ms <= after_ms);
    }
    Order("ForgetCalls");
    QVERIFY(Calls().isEmpty());
}

void SimulatorScript::ASlipInAScriptIsAnError_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QVariantList>("arguments");
    const auto answer = [](const char* name, const QString& interface, const QString& method, const char* kind,
                           const QVariantList& values, int delay_ms, int times) {
        QTest::newRow(name) << QByteArray("SetAnswer")
                            << QVariantList{interface,        method,   QString::fromLatin1(kind),
                                            QVariant(values), delay_ms, times};
    };
    answer("a method of an unknown interface", u"com.example"_s, PLAY_AUX, "reply", {}, 0, 0);
    answer("an unknown method", SOUND_INTERFACE, u"PlayDrum"_s, "reply", {}, 0, 0);
    answer("an unknown kind", SOUND_INTERFACE, PLAY_AUX, "applause", {}, 0, 0);
    answer("a negative delay", SOUND_INTERFACE, PLAY_AUX, "reply", {}, -1, 0);
    answer("a negative count", SOUND_INTERFACE, PLAY_AUX, "reply", {}, 0, -1);
    answer("an error without a message", SOUND_INTERFACE, PLAY_AUX, "error", {u"com.example.E"_s}, 0, 0);
    answer("an error with a name that no bus takes", SOUND_INTERFACE, PLAY_AUX, "error", {u"Error"_s, QString()}, 0, 0);
    const auto signal = [](const char* name, const QString& interface, const QString& method, const char* of,
                           int gap_ms, int times) {
        QTest::newRow(name) << QByteArray("SetSignal")
                            << QVariantList{interface, method, QString::fromLatin1(of), QVariant(QVariantList()), true,
                                            gap_ms,    times};
    };
    signal("a signal at an unknown interface", u"com.example"_s, PLAY_AUX, "PlayFileCompleted", 0, 1);
    signal("a signal at an unknown method", SOUND_INTERFACE, u"PlayDrum"_s, "PlayFileCompleted", 0, 1);
    signal("an unknown signal at a method", SOUND_INTERFACE, PLAY_AUX, "Applause", 0, 1);
    signal("a signal with a negative gap", SOUND_INTERFACE, PLAY_AUX, "PlayFileCompleted", -1, 1);
    signal("a signal with a negative count", SOUND_INTERFACE, PLAY_AUX, "PlayFileCompleted", 0, -1);
    QTest::newRow("an unknown peer") << QByteArray("SetPresent") << QVariantList{u"com.example"_s, true};
    QTest::newRow("an unknown signal") << QByteArray("EmitSignal")
                                       << QVariantList{SOUND_INTERFACE, u"Applause"_s, QVariant(QVariantList()), 1};
}

void SimulatorScript::ASlipInAScriptIsAnError()
{
    QFETCH(QByteArray, method);
    QFETCH(QVariantList, arguments);
    Start();
    QCOMPARE(Control(method.constData(), arguments).errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    QCOMPARE(Call("sound", PLAY_AUX).arguments(), QVariantList{0});
}

OZNA_CASE(SimulatorScript, SimulatorScript)
#include "tst_SimulatorScript.moc"
