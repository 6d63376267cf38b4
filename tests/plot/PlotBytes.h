#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

/// A plot file made byte by byte: magic and version, then records whose heads hold where they end.
class PlotBytes {
public:
    /// Where a record stands.
    struct Record {
        std::int32_t kind;
        std::size_t start;
        std::size_t end;
    };

    explicit PlotBytes(std::int32_t version = 9)
    {
        Raw(std::string_view("H\0A\0L\0Y\0A\0R\0D\0 \0P", 17)).Int(version);
    }

    PlotBytes& Raw(std::string_view bytes)
    {
        m_Bytes += bytes;
        return *this;
    }
    PlotBytes& Byte(int value) { return Raw(std::string(1, static_cast<char>(value))); }
    PlotBytes& Int(std::int64_t value) { return Little(static_cast<std::uint64_t>(value), 4); }
    PlotBytes& Double(double value)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Little(bits, 8);
    }
    PlotBytes& Doubles(std::initializer_list<double> values)
    {
        for (const double value : values) Double(value);
        return *this;
    }
    PlotBytes& Float(float value)
    {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return Little(bits, 4);
    }
    PlotBytes& Point(double x, double y, double z, double rest = 0) { return Doubles({x, y, z, rest}); }
    PlotBytes& Count(std::int64_t count)
    {
        m_Counts.push_back(m_Bytes.size());
        return Int(count);
    }
    PlotBytes& String(std::u16string_view text)
    {
        Count(static_cast<std::int64_t>(text.size()));
        for (const char16_t unit : text) Little(unit, 2);
        return *this;
    }
    /// The head of a record; the record before it ends here.
    PlotBytes& Begin(std::int32_t kind)
    {
        End();
        m_Records.push_back({kind, m_Bytes.size(), 0});
        return Int(kind).Int(0);
    }
    PlotBytes& Layer(std::u16string_view name, bool visible = true, std::uint32_t color = 0xFFFFFF)
    {
        return Begin(1).String(name).Byte(visible ? 1 : 0).Int(color);
    }
    /// With its end mark.
    std::string File()
    {
        End();
        return m_Bytes + "\xFF\xFF\xFF\xFF";
    }
    std::size_t Size() const { return m_Bytes.size(); }
    const std::vector<Record>& Records()
    {
        End();
        return m_Records;
    }
    /// Offsets of all counts: of characters, of vertices, of corners.
    const std::vector<std::size_t>& Counts() const { return m_Counts; }

    static std::string IntBytes(std::int64_t value)
    {
        PlotBytes bytes;
        bytes.m_Bytes.clear();
        return bytes.Int(value).m_Bytes;
    }

private:
    PlotBytes& Little(std::uint64_t value, int count)
    {
        for (int i = 0; i < count; ++i) m_Bytes += static_cast<char>(value >> (8 * i) & 0xFF);
        return *this;
    }
    void End()
    {
        if (m_Records.empty() || m_Records.back().end != 0) return;
        m_Records.back().end = m_Bytes.size();
        m_Bytes.replace(m_Records.back().start + 4, 4, IntBytes(static_cast<std::int64_t>(m_Bytes.size())));
    }

    std::string m_Bytes;
    std::vector<Record> m_Records;
    std::vector<std::size_t> m_Counts;
};
