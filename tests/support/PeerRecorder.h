#pragma once

#include "peers/PeerReply.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>

// One call as it would have gone over the bus.
struct PeerRequest
{
    QString service; // empty where there is no proxy
    QString path;
    QString interface;
    QString method;
    QVariantList arguments;
    int timeout_ms; // the proxy's at the time of the call

    // As the simulated device shows it: "sound.PlayFile ss gong.mp3 08:30:00", with its types on the bus, or "-".
    [[nodiscard]] QString Shown() const;
};

// Takes the bus's place for as long as it lives: keeps every request and answers as told, with status 0 unless told.
class PeerRecorder final
{
public:
    using Answerer = std::function<PeerReply(const PeerRequest& request)>;

    PeerRecorder();
    ~PeerRecorder();

    PeerRecorder(const PeerRecorder&) = delete;
    PeerRecorder& operator=(const PeerRecorder&) = delete;

    // How the method is answered from now on: with a status, with a bus error, or as answerer decides.
    void Answer(const char* method, int status);
    void AnswerBusError(const char* method, const QString& message);
    void Answer(const char* method, Answerer answerer);

    [[nodiscard]] const QList<PeerRequest>& Requests() const { return m_requests; }
    void Clear() { m_requests.clear(); }

    // Takes all requests and compares them, as they are shown, with expected. Empty when they are equal, otherwise a
    // text for people.
    QByteArray Compare(const QStringList& expected);

private:
    PeerReply Record(const PeerRequest& request);

    QList<PeerRequest> m_requests;
    QHash<QString, Answerer> m_answerers;
};

// Fails the test, and leaves the test function, unless the requests to the recorder are exactly those given.
#define EXPECT_REQUESTS(recorder, ...)                                                                                 \
    do                                                                                                                 \
    {                                                                                                                  \
        const QByteArray requestDifference = (recorder).Compare(QStringList __VA_ARGS__);                              \
        if (!requestDifference.isEmpty())                                                                              \
        {                                                                                                              \
            QTest::qFail(requestDifference.constData(), __FILE__, __LINE__);                                           \
            return;                                                                                                    \
        }                                                                                                              \
    } while (false)
