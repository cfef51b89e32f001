#pragma once

#include <QString>

#include <memory>

class QDBusMessage;
class QDBusPendingCallWatcher;

// What came back from a peer: the status, and the bus's error message where the call failed on the bus.
class PeerReply final
{
public:
    // Reads a reply or error message. The status is its first value: an int as it stands, anything else converted
    // (to the nearest int), and 0 where there is none or it cannot be converted. An error message is read by the same
    // rule.
    // turn: see Turn.
    explicit PeerReply(const QDBusMessage& message, std::shared_ptr<const QDBusPendingCallWatcher> turn = nullptr);

    // A peer's answer with that status; 0 means accepted.
    explicit PeerReply(int status);

    // A call that failed on the bus.
    [[nodiscard]] static PeerReply Failed(const QString& errorMessage);

    // A call that was not made. It is reported like one that failed on the bus, and not at all where the status alone
    // is judged: there is none, and the call must not count as accepted.
    [[nodiscard]] static PeerReply NotSent(const QString& reason);

    [[nodiscard]] bool IsBusError() const { return m_busError; }
    [[nodiscard]] QString ErrorMessage() const { return m_errorMessage; }
    [[nodiscard]] int Status() const { return m_status; }
    [[nodiscard]] bool IsAccepted() const { return !m_busError && m_status == 0; }

    // The unique name of the connection that answered; empty where none did: the bus or its library made the error.
    [[nodiscard]] QString Sender() const { return m_sender; }

    // Says by its signal finished that the answer's turn has come: what the bus delivered before the answer has reached
    // its slots by then, and what it delivered after it has not. Lives as long as somebody has a share in it. Null
    // where that order is not known: the turn has come already.
    [[nodiscard]] std::shared_ptr<const QDBusPendingCallWatcher> Turn() const { return m_turn; }

    // Has the outcome logged by the one of the three that fits: onBusError(const char* message), onRefused(int status)
    // or onAccepted(). True when the peer accepted.
    template <typename OnBusError, typename OnRefused, typename OnAccepted>
    bool Report(OnBusError onBusError, OnRefused onRefused, OnAccepted onAccepted) const
    {
        if (!m_busError)
            return ReportStatus(onRefused, onAccepted);
        onBusError(qPrintable(m_errorMessage));
        return false;
    }

    // The same for the calls that are judged by the status alone, also when they failed on the bus.
    template <typename OnRefused, typename OnAccepted>
    bool ReportStatus(OnRefused onRefused, OnAccepted onAccepted) const
    {
        if (!m_isSent)
            return false;
        if (m_status != 0)
            onRefused(m_status);
        else
            onAccepted();
        return m_status == 0;
    }

private:
    bool m_isSent = true;
    bool m_busError = false;
    QString m_errorMessage;
    int m_status = 0;
    QString m_sender;
    std::shared_ptr<const QDBusPendingCallWatcher> m_turn;
};
