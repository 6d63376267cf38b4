#pragma once

#include <string>
#include <string_view>

/// Writes JSON piece by piece into a buffer: for many small objects, where a tree of values would cost more
/// than the work. The caller puts the pieces in order; what comes out is pure text without control
/// characters.
class JsonWriter {
public:
    /// Text as it is: punctuation, and names and values that need no escaping.
    void Raw(std::string_view text) { m_Text += text; }
    /// A string in quotes. What is no character (a lone surrogate, a value above U+10FFFF) becomes U+FFFD.
    void String(std::wstring_view text);
    /// The shortest decimal form that reads back as the same number; null when it is not finite.
    void Number(double value);
    /// The same in single precision: 0.1F is 0.1.
    void Number(float value);
    void Number(long long value);
    void Number(int value) { Number(static_cast<long long>(value)); }
    void Bool(bool value) { Raw(value ? "true" : "false"); }

    const std::string& Text() const { return m_Text; }
    void Clear() { m_Text.clear(); }

private:
    template <class T>
    void Shortest(T value);

    std::string m_Text;
};

/// The double that reads like a number of single precision: 0.1 for 0.1F.
double ReadsLike(float value);
