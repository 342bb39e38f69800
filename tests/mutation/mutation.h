#pragma once

#include <cstdlib>

// Included into the sources with faults from scripts/mutate: switches on the fault with the number in MUTANT.
// Home-made, like mutate.py.

namespace mutation {

inline bool on(int number)
{
    static const int active = [] {
        const char *value = std::getenv("MUTANT");
        return value ? std::atoi(value) : 0;
    }();
    return active == number;
}

template <class A, class B>
bool less(int number, const A &a, const B &b)
{
    return on(number) ? a <= b : a < b;
}
template <class A, class B>
bool lessOrEqual(int number, const A &a, const B &b)
{
    return on(number) ? a < b : a <= b;
}
template <class A, class B>
bool greater(int number, const A &a, const B &b)
{
    return on(number) ? a >= b : a > b;
}
template <class A, class B>
bool greaterOrEqual(int number, const A &a, const B &b)
{
    return on(number) ? a > b : a >= b;
}
template <class A, class B>
auto plus(int number, const A &a, const B &b) -> decltype(a + b)
{
    return on(number) ? a - b : a + b;
}
template <class A, class B>
auto minus(int number, const A &a, const B &b) -> decltype(a - b)
{
    return on(number) ? a + b : a - b;
}

}
