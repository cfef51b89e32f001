#pragma once

#include "engine/Request.h"

#include <QString>

#include <map>

struct RehearsalResult;

// What is in force on the device at the end of a rehearsal: what its requests, those of the run-up included, have set
// last, and what plays.
class EndState final
{
public:
    // The name of what plays.
    static inline const QString PLAYING = QStringLiteral("playing");

    // The next request. isByChance: its start may as well not come; the value says so.
    void Take(const Request& request, bool isByChance);

    // Values by what they are values of: "master volume": "70", "playing": "Stream evening". What was never set, and
    // "playing" where nothing plays, is left out.
    using Values = std::map<QString, QString>;

    // run: of those requests.
    [[nodiscard]] Values At(const RehearsalResult& run) const;

private:
    Values m_settings;
};
