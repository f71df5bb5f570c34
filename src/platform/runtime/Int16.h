#pragma once
// 16-bit counters and indices, booleans as -1/0, and arrays with bounds: the run-time types
// whose failures (6 Overflow, 9 Subscript out of range) the routines' handlers rely on.
#include "Failure.h"
#include <QString>
#include <cstdint>
#include <vector>

namespace steplets {

class Int16 {
public:
    constexpr Int16() = default;
    constexpr Int16(std::int16_t v) : m_v(v) {}
    // Conversion from a wider number: outside -32768..32767 is failure 6.
    static Int16 from(long long v);
    static Int16 from(double v);                      // rounds half to even, then checks

    constexpr int value() const { return m_v; }
    constexpr operator int() const { return m_v; }

    Int16& operator+=(Int16 o) { *this = from(static_cast<long long>(m_v) + o.m_v); return *this; }
    Int16& operator-=(Int16 o) { *this = from(static_cast<long long>(m_v) - o.m_v); return *this; }
    Int16& operator*=(Int16 o) { *this = from(static_cast<long long>(m_v) * o.m_v); return *this; }
    Int16& operator++() { return *this += Int16(1); }
    friend Int16 operator+(Int16 a, Int16 b) { return a += b; }
    friend Int16 operator-(Int16 a, Int16 b) { return a -= b; }
    friend Int16 operator*(Int16 a, Int16 b) { return a *= b; }
    friend constexpr bool operator==(Int16 a, Int16 b) { return a.m_v == b.m_v; }
    // Without this, comparing with a literal is ambiguous between the two conversions.
    friend constexpr bool operator==(Int16 a, int b) { return a.m_v == b; }

private:
    std::int16_t m_v = 0;
};

// A 16-bit boolean: True is -1, False is 0; its text is "True"/"False".
class Bool16 {
public:
    constexpr Bool16() = default;
    constexpr Bool16(bool b) : m_v(b ? -1 : 0) {}
    constexpr operator bool() const { return m_v != 0; }
    constexpr int value() const { return m_v; }
    QString text() const { return m_v ? QStringLiteral("True") : QStringLiteral("False"); }

private:
    std::int16_t m_v = 0;
};

// An array with explicit bounds. One that was never dimensioned has no bounds: asking for them,
// or for any element, is failure 9, as is any index outside the bounds.
template <class T>
class BoundedArray {
public:
    bool dimensioned() const { return m_dimensioned; }
    void redim(long lower, long upper) { m_lower = lower; m_items.assign(count(lower, upper), T{}); m_dimensioned = true; }
    void redimPreserve(long upper) {
        if (!m_dimensioned) { redim(0, upper); return; }
        m_items.resize(count(m_lower, upper));
    }
    void erase() { m_items.clear(); m_dimensioned = false; }
    long lbound() const { check(); return m_lower; }
    long ubound() const { check(); return m_lower + static_cast<long>(m_items.size()) - 1; }
    T& operator[](long i) { return m_items[index(i)]; }
    const T& operator[](long i) const { return m_items[index(i)]; }

private:
    static std::size_t count(long lower, long upper) {
        if (upper < lower - 1) throw Failure::subscript();
        return static_cast<std::size_t>(upper - lower + 1);
    }
    void check() const { if (!m_dimensioned) throw Failure::subscript(); }
    std::size_t index(long i) const {
        check();
        if (i < m_lower || i - m_lower >= static_cast<long>(m_items.size())) throw Failure::subscript();
        return static_cast<std::size_t>(i - m_lower);
    }
    std::vector<T> m_items;
    long m_lower = 0;
    bool m_dimensioned = false;
};

} // namespace steplets
