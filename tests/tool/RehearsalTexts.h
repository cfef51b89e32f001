#pragma once

#include <QStringList>

class Rehearsal;

// What a rehearsal gave, as texts to be compared with those of another.
namespace RehearsalTexts
{

QStringList Requests(const Rehearsal& rehearsal);

// When what begins to play ends, and what is started how.
QStringList Starts(const Rehearsal& rehearsal);

// What has passed without being started.
QStringList Missed(const Rehearsal& rehearsal);

// What is called missed though it was started in time.
QStringList WronglyMissed(const Rehearsal& rehearsal);

} // namespace RehearsalTexts
