#pragma once

#include "platform/CDC.h"

#include <utility>

/// Keeps a pen, brush, font or bitmap selected in a context for its own lifetime, then selects the one before
/// again. Both have to outlive it.
template <class T>
class GDISelector {
public:
    GDISelector(CDC* dc, T* object) : m_DC(dc), m_Previous(dc->SelectObject(object)) {}
    ~GDISelector() { m_DC->SelectObject(m_Previous); }
    GDISelector(const GDISelector&) = delete;
    GDISelector& operator=(const GDISelector&) = delete;

private:
    using Selected = decltype(std::declval<CDC&>().SelectObject(std::declval<T*>()));

    CDC* m_DC;
    Selected m_Previous;
};
