#pragma once

#include <QByteArray>
#include <QStringList>

// Compares two lists of lines. Empty when they are equal; otherwise a text for people: the first line that differs,
// as expected and as found, and the whole list that was found, with that line marked.
QByteArray TextDiff(const QStringList& expected, const QStringList& found, const char* what);
