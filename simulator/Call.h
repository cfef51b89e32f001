#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantList>

// A request that a simulated peer has received.
struct Call
{
    QString interface;
    QString method;
    QString signature;
    QVariantList arguments; // as they are typed
    QDateTime time;         // of arrival, local
};
