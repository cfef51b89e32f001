#pragma once

#include "Call.h"
#include "Expectations.h"

#include <QString>
#include <QVariantList>

#include <optional>

class Simulator;

// Prints what happens on the bus to standard output, a line each: time, peer and call or signal. With expectations also
// by how many milliseconds a request came after its time, and a table of expected and received requests at the end.
class Transcript final
{
public:
    // quiet: keeps account of the expectations, but writes nothing.
    Transcript(std::optional<Expectations> expectations, bool quiet);

    // Follows the simulator's calls and signals. The transcript outlives the simulator's event loop.
    void Follow(const Simulator& simulator);

    // Writes the table of what was scheduled and what was received.
    void ShowReport() const;

    // False when there were expectations and one was not met.
    [[nodiscard]] bool IsGood() const { return !m_expectations || m_expectations->AreMet(); }

private:
    void ShowCall(const Call& call);
    void ShowSignal(const QString& interface, const QString& signal, const QVariantList& values) const;
    void ShowEvent(const QTime& time, const QString& lateness, const QString& interface, const QString& text) const;

    std::optional<Expectations> m_expectations;
    const bool m_quiet;
};
