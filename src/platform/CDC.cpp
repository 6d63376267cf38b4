// What is the same on every system.
#include "platform/CDC.h"

#include <utility>

bool CDC::DeleteDC()
{
    return CDC::CreateCompatibleDC(nullptr);
}

CPen* CDC::SelectObject(CPen* pen)
{
    return std::exchange(m_Pen, pen);
}

CBrush* CDC::SelectObject(CBrush* brush)
{
    return std::exchange(m_Brush, brush);
}

CFont* CDC::SelectObject(CFont* font)
{
    return std::exchange(m_Font, font);
}
