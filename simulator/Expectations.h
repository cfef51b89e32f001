#pragma once

#include "Call.h"

#include <QTime>

#include <optional>
#include <vector>

// The requests that a schedule should cause, and whether those that arrive match it.
class Expectations final
{
public:
    static constexpr int TOLERANCE_MS = 250;

    struct Request
    {
        std::optional<QTime> due;      // none: not expected
        std::optional<QTime> received; // none: not yet
        QString text;                  // method and arguments
        int tolerance_ms = TOLERANCE_MS;
        int late_ms = 0;

        // Whether it came when it was due, or at most tolerance_ms later.
        [[nodiscard]] bool IsOnTime() const;
    };

    // Reads a text file with one request a line: "hh:mm:ss", method, arguments as CallText gives them, and optionally
    // a tolerance in milliseconds, with tabs in between; local time, of the day that is near. Throws
    // std::runtime_error, with the cause.
    explicit Expectations(const QString& fileName);

    // Notes that a call has arrived: the first expected request that is the same and still outstanding, or one more
    // that is not expected.
    const Request& Note(const Call& call);

    // In the order of the file, then the unexpected ones as they came.
    [[nodiscard]] const std::vector<Request>& Requests() const { return m_requests; }

    // True when every expected request came on time and no other.
    [[nodiscard]] bool AreMet() const;

private:
    void AddLine(const QString& line, int number);

    std::vector<Request> m_requests;
};
