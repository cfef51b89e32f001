#pragma once

#include "NumberText.h"

#include <QString>

// How a task reads the numbers among its parameters.
namespace Parameter
{

// What a switch must be for "on"; every other number means "off".
inline constexpr int ON = 1;

// text as a decimal number. Text that is none gives fallback, after onInvalid has been called to log it.
template <typename OnInvalid> int ToInt(const QString& text, int fallback, OnInvalid onInvalid)
{
    if (const std::optional<int> value = NumberText::ToInt(text))
        return *value;
    onInvalid();
    return fallback;
}

// Whether text switches something on. Text that is no number switches it off, after onInvalid has been called.
template <typename OnInvalid> bool ToSwitch(const QString& text, OnInvalid onInvalid)
{
    return ToInt(text, 0, onInvalid) == ON;
}

} // namespace Parameter
