#pragma once

#include "support/CRCChecksum.h"
#include "support/Numeric.h"

#include <algorithm>
#include <string>
#include <string_view>

/// A string kept with a 32-bit hash of its upper-cased characters: the name of a layer. Upper-casing is that
/// of the "C" locale (A to Z only).
template <class Char>
class HashedString {
public:
    using String = std::basic_string<Char>;

    HashedString() : HashedString(String()) {}
    HashedString(const String& text) : m_Text(text), m_Hash(HashOf(text)) {}
    HashedString(const Char* text) : HashedString(String(text ? text : String().c_str())) {}

    const String& Text() const { return m_Text; }
    operator const String&() const { return m_Text; }
    unsigned int Hash() const { return m_Hash; }

    /// Names are the same when their hashes are equal and their texts are, without regard to case.
    bool operator==(const HashedString& other) const
    {
        return m_Hash == other.m_Hash && icompareW(m_Text, other.m_Text);
    }

    /// The hash of a text: the checksum of its upper-cased characters, each folded as an int.
    static unsigned int HashOf(std::basic_string_view<Char> text)
    {
        constexpr std::size_t BLOCK = 16;
        CRCChecksum checksum;
        for (; !text.empty(); text.remove_prefix((std::min)(BLOCK, text.size()))) {
            int upper[BLOCK];
            std::transform(text.begin(), text.begin() + (std::min)(BLOCK, text.size()), upper,
                           [](Char c) { return static_cast<int>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c); });
            checksum.UpdateInts(upper, (std::min)(BLOCK, text.size()));
        }
        return checksum.Value();
    }

private:
    String m_Text;
    unsigned int m_Hash;
};
