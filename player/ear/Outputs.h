#pragma once

#include <QList>
#include <QString>

// The outputs of this machine.
namespace Outputs
{

struct Output
{
    QString setting; // as the settings name it: "pulse", "alsa:hw:0,0"
    QString name;    // as its maker names it
};

// The sound server's default output first, then the cards. Empty when there are none.
[[nodiscard]] QList<Output> All();

} // namespace Outputs
