#pragma once

/// Stores a property's value and signals it, unless it is the present one.
/// @return whether it was stored
template <typename Owner, typename T, typename Value>
bool storeProperty(Owner *owner, T *field, const T &value, void (Owner::*changed)(Value)) {
    if (*field == value)
        return false;
    *field = value;
    (owner->*changed)(value);
    return true;
}
